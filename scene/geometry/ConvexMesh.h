#pragma once

#include <atomic>
#include <string>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/Mesh.h"

namespace vantorix::scene {

/// A mesh that may stand for the convex hull of another geometry and then has its bounds.
class VANTORIX_SCENE_EXPORT ConvexMesh : public Mesh {
public:
    ConvexMesh(const std::string& id, const std::string& name);
    ConvexMesh(const ConvexMesh& other);
    ConvexMesh& operator=(const ConvexMesh& other);

    /// A convex mesh with the contents of Mesh::clone() that shares the hull geometry.
    boost::shared_ptr<IGeometry> clone() override;

    /// @name Bounding volume: that of the hull geometry when there is one
    /// @{
    Eigen::Vector3f getBVCenter() override;
    Eigen::Vector3f getBVMin() override;
    Eigen::Vector3f getBVMax() override;
    /// @}
    ~ConvexMesh() override;

    /// The geometry whose hull this mesh is, kept alive by it. Ignored: an empty pointer, and a
    /// geometry that is this mesh or has it as a hull, directly or through others.
    void setConvexHullOf(boost::shared_ptr<IGeometry> geometry);
    boost::shared_ptr<IGeometry> getConvexHullOf() const;

private:
    boost::shared_ptr<IGeometry> takeHull();
    void replaceHull(boost::shared_ptr<IGeometry> geometry);
    /// Whether @p geometry is this mesh or a hull of it, directly or through others.
    bool isReachedFrom(const IGeometry* geometry) const;
    /// The geometry whose bounds count; empty when they are the mesh's own.
    boost::shared_ptr<IGeometry> findBounds() const;

    boost::shared_ptr<IGeometry> convexHullOf_;
    std::atomic<unsigned int> hullCount_;  // Convex meshes that are hulls of this one.
};

}  // namespace vantorix::scene
