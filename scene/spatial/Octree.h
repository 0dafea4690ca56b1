#pragma once

#include <optional>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/spatial/PickHit.h"

namespace vantorix::scene {

class OctreeNode;
class OctreePicking;
class Ray;
struct SceneFaces;

/// The faces of a sub-tree in world space, sorted into an axis-aligned octree.
///
/// A snapshot: changes of the scene are not followed until setSceneNode() and calculate() are
/// called again. Ownership: keeps the scene node, the faces and the nodes of the tree; copies share
/// them. Threads: not locked, and the scene must not change while faces are gathered; any number of
/// threads may then read and pick.
class VANTORIX_SCENE_EXPORT Octree {
public:
    using GeometryPrimitives = std::vector<
        std::pair<boost::shared_ptr<IGeometry>, std::vector<boost::shared_ptr<IPrimitive>>>>;

    Octree();
    Octree(const Octree& other);
    Octree& operator=(const Octree& other);
    virtual ~Octree();

    /// Gathers the faces of the meshes that @p node and the nodes below it instance, depth first,
    /// parents before their children. Each face is a new object, moved by the node's world matrix.
    /// Polygons write their line for a move that they do not make.
    /// An empty pointer leaves no faces.
    void setSceneNode(boost::shared_ptr<Node> node);

    /// Builds the tree in the box of the scene node, as OctreeNode::calculate does; the former tree
    /// goes, unless a copy holds it. Does nothing without a scene node. If memory runs out, the
    /// former tree stays.
    void calculate(int maxDepth, int maxPrimitives);

    /// Null before calculate(). The nodes live until the tree is replaced or released here and in
    /// every copy.
    OctreeNode* getRoot() const;

    /// What was gathered, an entry per instanced mesh.
    /// Deliberate: it is never cleared, each setSceneNode() adds to it.
    const GeometryPrimitives& getGeometryPrimitives() const;

    /// False, deliberately, as OctreeNode::intersectRay() is: pick() tells what a ray hits.
    bool intersectRay(boost::shared_ptr<Ray> ray) const;

    /// @name Picking
    /// True ray/triangle tests on the faces that the tree was calculated from, as they were when
    /// the first ray was cast; both sides of a face count, and polygons take part as a fan around
    /// their first corner. The direction may have any length. Nothing is hit before calculate(), by
    /// a ray that is not finite, or by one without direction.
    /// Cost: the first ray sorts the faces; then it grows with the logarithm of their number.
    /// @{
    /// The nearest hit at or in front of the origin; of equally near ones the face gathered first.
    std::optional<PickHit> pick(const Ray& ray) const;
    /// All hits at or in front of the origin, nearest first.
    std::vector<PickHit> pickAll(const Ray& ray) const;
    /// @}

protected:
    /// Appends the faces of @p node and of the nodes below it.
    void assembleScenePrimitives(boost::shared_ptr<Node> node);

private:
    boost::shared_ptr<Node> sceneNode_;
    GeometryPrimitives geometryPrimitives_;
    boost::shared_ptr<SceneFaces> gathered_;  // Copied before it changes while others hold it.
    boost::shared_ptr<OctreeNode> root_;
    boost::shared_ptr<OctreePicking> picking_;
};

}  // namespace vantorix::scene
