#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <Eigen/Geometry>
#include <boost/smart_ptr/enable_shared_from_this.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/smart_ptr/weak_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/graph/SceneHandle.h"

namespace vantorix::core::event {
class EventData;
class EventType;
}  // namespace vantorix::core::event

namespace vantorix::scene {

class Camera;
class ChildRow;
struct Branches;
class InstanceController;
class InstanceGeometry;
class ITransformation;
class Light;
class Material;
class SceneManager;

/// An element of the scene tree: identity, ordered children, instances and a transformation.
///
/// Ownership: children and instances are shared; parent and scene manager are weak. A node must be
/// held by a boost::shared_ptr. Once its scene manager is gone, a node can still be read and moved
/// but takes no children and sends no events.
/// Threads: not locked. While the synchronisation thread runs, use a node between
/// SceneManager::lockScene() and unlockScene(); reading a world matrix fills a cache and counts as
/// an edit.
/// Matrices: column-major, column vectors, world = parent world * local,
/// local = translation * rotation * scale.
class VANTORIX_SCENE_EXPORT Node : public boost::enable_shared_from_this<Node> {
public:
    /// A detached node with the next process-wide ID: "Node0", "Node1", ...
    explicit Node(boost::shared_ptr<SceneManager> sceneManager);
    /// For the library itself, which alone can make a Key: as the other one, but with an ID of its
    /// own from the start. The counter of the process goes on all the same.
    class Key {
        friend class SceneMerge;
        explicit Key() = default;
    };
    Node(const Key& key, const SceneHandle& scene, std::string id);
    virtual ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// "Node" and the next number of a counter that the whole process shares. Not checked against
    /// identifiers in use.
    static std::string generateID();

    /// @name Identity
    /// setID and setSID also record the value with SceneManager::addID.
    /// @{
    std::string getID() const { return id_; }
    void setID(std::string id);
    std::string getSID() const;
    void setSID(std::string sid);
    std::string getName() const { return name_; }
    void setName(std::string name);
    /// Free text, for example "NODE" or "JOINT".
    std::string getType() const;
    void setType(std::string type);
    /// The scene that this node was made for; empty once it is gone.
    boost::shared_ptr<SceneManager> getSceneManager() const { return scene_.lock(); }
    /// @}

    /// @name Hierarchy
    /// @{
    /// Appends @p child. Sends the child's "NodeTransformationUpdate" and "SceneUpdate", then
    /// "NodeNewChild" (this ID, child ID), then "SceneTopologyUpdate".
    /// Does nothing when @p child is empty, is this node or one of its ancestors, or when the scene
    /// manager is gone. A child may stand in several rows; the last one is its parent.
    void addNode(boost::shared_ptr<Node> child);

    /// Detaches the first occurrence of @p child; an empty pointer is ignored.
    /// Deliberate: only a call that detaches nothing sends "SceneTopologyUpdate", and a detached
    /// child still names its old parent.
    void removeChild(boost::shared_ptr<Node> child);

    unsigned int getChildCount() const;

    /// @throws std::out_of_range unless @p index is below getChildCount().
    boost::shared_ptr<Node> getChildNode(unsigned int index) const;

    /// The node that this one was last added to; empty for a root and once the parent is gone.
    boost::shared_ptr<Node> getParent() const;
    /// @}

    /// @name Instances
    /// Positions count from 0 in order of addition; positional access throws std::out_of_range
    /// outside the list. Empty pointers are ignored.
    /// @{
    /// Sends "NodeAddedLight" (node ID, light ID).
    void addInstanceLight(boost::shared_ptr<Light> light);
    boost::shared_ptr<Light> getInstanceLight(unsigned int index) const;
    unsigned int getInstanceLightCount() const;

    void addInstanceCamera(boost::shared_ptr<Camera> camera);
    boost::shared_ptr<Camera> getInstanceCamera(unsigned int index) const;
    unsigned int getInstanceCameraCount() const;

    void addInstanceGeometry(boost::shared_ptr<InstanceGeometry> instance);
    /// Erases the first occurrence of @p instance.
    void removeInstanceGeometry(boost::shared_ptr<InstanceGeometry> instance);
    boost::shared_ptr<InstanceGeometry> getInstanceGeometry(unsigned int index) const;
    unsigned int getInstanceGeometryCount() const;
    std::vector<boost::shared_ptr<InstanceGeometry>> getInstancedGeometries() const;

    void addInstanceController(boost::shared_ptr<InstanceController> instance);
    boost::shared_ptr<InstanceController> getInstanceController(unsigned int index) const;
    unsigned int getInstanceControllerCount() const;
    std::vector<boost::shared_ptr<InstanceController>> getInstancedControllers() const;
    /// @}

    /// @name Layers
    /// Layers by name go through the scene's LayerManager, which registers an unknown name; without
    /// a scene they do nothing. Adding sends "NodeAddedLayer", removing "NodeRemovedLayer" (node
    /// ID, layer name), whether or not the membership changed.
    /// @{
    void addToLayer(int layer);
    void addToLayer(std::string name);
    void removeFromLayer(int layer);
    void removeFromLayer(std::string name);
    bool inLayer(int layer) const;
    bool inLayer(std::string name) const;
    std::set<int> getLayers() const;
    /// Names of all layers of this node; a layer that no name maps to counts as "".
    std::set<std::string> getLayersNames() const;
    std::string getLayerName(int layer) const;

    /// A node is visible unless it is in layer 0, "hidden".
    bool isVisible() const { return !inLayer(0); }
    void setVisible(bool visible);
    /// @}

    /// @name Transformation
    /// Every setter recomputes the local matrix and sends "NodeTransformationUpdate" (ID, matrix),
    /// then "SceneUpdate", unless it says otherwise.
    /// @{
    /// Adds diag(scale) * rotation, applied to @p offset as a point, to the translation.
    void move(const Eigen::Vector3f& offset);
    void move(float x, float y, float z);
    void addTranslation(const Eigen::Vector3f& offset);
    void addTranslation(float x, float y, float z);
    void setTranslation(const Eigen::Translation<float, 3>& translation);
    /// Multiplies the upper-left 3x3 of the rotation by @p rotation from the right.
    void rotate(const Eigen::Matrix3f& rotation);
    /// Same as rotate.
    void addRotation(const Eigen::Matrix3f& rotation);
    void setRotation(const Eigen::Matrix4f& rotation);
    /// Replaces the scale (it does not multiply): factors along the local x, y and z axis.
    void scale(const Eigen::Vector3f& factors);
    void setScale(const Eigen::Vector3f& factors);
    /// Adds the matrix's translation to ours and multiplies the rotation by the whole matrix.
    void addTransformation(const Eigen::Matrix4f& matrix);
    /// Applies @p element and appends it to the original transformations; an empty pointer is
    /// ignored. A translate element adds to the translation, a rotate element turns, a scale
    /// element replaces the scale, a matrix element does all three after a polar decomposition
    /// (Shoemake and Duff, "Matrix Animation and Polar Decomposition", 1992); look-at and skew
    /// elements change nothing.
    void addTransformation(boost::shared_ptr<ITransformation> element);
    void setTransformations(const Eigen::Translation<float, 3>& translation,
                            const Eigen::Matrix4f& rotation);
    /// Takes the translation and, with columns brought to unit length, the 3x3 part of @p matrix.
    /// Deliberate: a scale in it is dropped, and a zero column is not guarded against.
    void setTransformations(const Eigen::Matrix4f& matrix);

    /// The elements given to addTransformation, in order. Replacing them recomputes nothing and
    /// sends nothing.
    std::vector<boost::shared_ptr<ITransformation>> getOriginalTransformations() const;
    void setOriginalTransformations(std::vector<boost::shared_ptr<ITransformation>> elements);

    /// The local matrix.
    const Eigen::Matrix4f& getTransformations() const { return localMatrix_; }
    Eigen::Translation<float, 3> getTranslation() const;
    Eigen::Matrix4f getRotation() const { return rotation_; }
    Eigen::Vector3f getScale() const { return scaling_; }

    /// World matrix: the product of local matrices along the chain of live parents. Where parents
    /// form a circle, the chain ends before the first node met twice.
    Eigen::Matrix4f getCombinedTransformations() const;
    /// The same product of rotations alone.
    Eigen::Matrix4f getCombinedRotations() const;

    /// Recomputes the local matrix, then sends "NodeTransformationUpdate" and "SceneUpdate".
    void triggerTransformationUpdate();
    /// Sends "SceneTopologyUpdate".
    void triggerTopologyUpdate();
    bool needsUpdate() const { return false; }
    /// @}

    /// Binds @p material to the symbol of primitive @p primitive of geometry instance @p instance
    /// and sends "NodeMaterialChanged" (node ID, instance, primitive, material ID). Does nothing
    /// when the material is empty or the indices address no mesh primitive.
    void setMaterial(boost::shared_ptr<Material> material, unsigned int instance,
                     unsigned int primitive);

    /// @name Bounding volume
    /// World-space box around the geometries of this node and its descendants, each geometry's box
    /// taken through the world matrix of the node that instances it; (0,0,0) without geometry.
    /// Computed on each call, in time linear in the sub-tree.
    /// @{
    Eigen::Vector3f getBVMin() const;
    Eigen::Vector3f getBVMax() const;
    Eigen::Vector3f getBVCenter() const;
    /// @}

private:
    friend class AnimationPlayback;
    friend class ChildIndex;
    friend class NodeIndex;
    friend class NodeWalk;
    friend class NodeBounds;
    friend class SceneMerge;
    friend class TreeSnapshot;
    struct Extras;

    const Node* liveParent() const {
        return isInParentsRow_ || !parent_.expired() ? parentPointer_ : nullptr;
    }
    SceneManager* liveScene() const { return scene_.get(); }

    std::size_t slotOf(const Node& child) const;
    const Node* soleContainer() const;
    bool wouldCloseCircle(const Node& child) const;
    void leaveRow(Node& child);
    void loseAttachment();
    void releaseChildren();
    /// Makes room for @p count more children at once.
    void expectChildren(std::size_t count);
    Extras& extras();
    const Extras& readExtras() const;

    void turn(const Eigen::Matrix3f& rotation);
    void applyMatrix(const Eigen::Matrix4f& matrix);
    void takePlacement(const Eigen::Matrix4f& matrix);
    /// setTransformations and setScale at once, to be used where nobody hears of either. The last
    /// factor is not read.
    VANTORIX_SCENE_NO_EXPORT void poseUnheard(const Eigen::Matrix4f& matrix,
                                              const Eigen::Vector4f& factors);
    /// As setTranslation, setRotation and setScale with those of @p other.
    void copyPlacement(const Node& other);
    void applyElement(ITransformation& element);
    VANTORIX_SCENE_NO_EXPORT void updateLocalMatrix();
    VANTORIX_SCENE_NO_EXPORT void updateLocalTranslation();
    void announceMove();
    void sendMove();
    void triggerTranslationUpdate();

    // What every move and query goes through is hidden, so that the compiler may inline it.
    bool isWorldCurrent() const {
        const Node* const parent = liveParent();
        return parentEpoch_ == (parent ? parent->epoch_ : noParent);
    }
    VANTORIX_SCENE_NO_EXPORT bool cacheWorldMatrix() const;
    /// From the next ancestor whose matrix is current down to this node, whose @p parent has none.
    [[gnu::noinline]] VANTORIX_SCENE_NO_EXPORT bool cacheWorldMatricesDown(
        const Node* parent) const;
    Eigen::Matrix4f combineFromTop(Eigen::Matrix4f Node::*own) const;
    VANTORIX_SCENE_NO_EXPORT void adoptWorldMatrix(const Node* parent) const;
    VANTORIX_SCENE_NO_EXPORT void becomeBranch() const;
    void listBelow(const Node& parent) const;
    void unlinkFromParent() const;
    VANTORIX_SCENE_NO_EXPORT void forgetWorldMatrix() const;
    VANTORIX_SCENE_NO_EXPORT void forgetDependents() const;
    VANTORIX_SCENE_NO_EXPORT static Branches* forgetChain(const Node& top);

    bool isMoveHeard() const;
    bool isAnythingHeard() const;
    void sendLayerEvent(const core::event::EventType& type, int layer) const;
    bool isAdditionHeard(const Node& child) const;
    bool isMoveAnnounced(const Node& child) const;
    void announceNewChild(Node& child, bool hasMoved);

    std::string id_;
    std::string name_;

    std::uint64_t indexGeneration_ = 0;  ///< The index that lists this node; 0 if none does.

    // What a query of the world matrix touches lies together, and in its midst, what a move does.
    mutable Eigen::Matrix4f worldMatrix_;
    Eigen::Matrix4f localMatrix_ = Eigen::Matrix4f::Identity();
    Eigen::Vector4f translation_ = Eigen::Vector4f::Zero();  ///< The last element stays 0.
    SceneHandle scene_;

    // A cached world matrix is current while the parent's epoch is the one that it was computed in.
    // A node with dependents, children whose matrices were, stands in its parent's list of
    // branches. New epochs go down these lists only, so that neither wide nor deep trees pay for
    // nodes nobody asked, and a leaf is never touched. As long as there is one branch, it stands in
    // the node itself: chains need no list.
    static constexpr std::uint64_t noParent = 0;
    static constexpr std::uint64_t notCached = ~noParent;
    static constexpr auto unlisted = static_cast<std::uint32_t>(-1);
    static constexpr auto alone = unlisted - 1;
    mutable std::uint64_t parentEpoch_ = notCached;  ///< When the world matrix was cached.
    bool isInParentsRow_ = false;  ///< Spares counting references to a parent that has to stay.
    bool isLocalShifted_ = true;   ///< A finite translation shows in the last column only.
    mutable bool hasDependents_ = false;
    mutable bool hasBranchList_ = false;  ///< The row's list may hold some; then none is alone.
    mutable std::uint32_t branchPlace_ = unlisted;  ///< In the list of parentPointer_, or alone.
    mutable Node* soleBranch_ = nullptr;
    mutable std::uint64_t epoch_ = 1;
    Node* parentPointer_ = nullptr;  ///< Valid while isInParentsRow_ or parent_ is alive.

    // What a walk through the tree touches.
    std::unique_ptr<ChildRow> children_;  ///< Made for the first child.
    std::unique_ptr<Extras> extras_;      ///< Made for the first instance, layer, SID or element.
    std::uint32_t attachments_ = 0;       ///< Rows' slots that hold this node.
    std::uint32_t ticket_ = 0;            ///< Leads to the slot in the parent's row.

    Eigen::Vector3f scaling_ = Eigen::Vector3f::Ones();
    Eigen::Matrix4f rotation_ = Eigen::Matrix4f::Identity();
    boost::weak_ptr<Node> parent_;  ///< Made when the parent's row loses this node.
};

}  // namespace vantorix::scene
