#pragma once

#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/IPrimitive.h"

namespace vantorix::scene {

/// A face with any number of vertices. Polygons take no part in normals, transforms and picking:
/// those operations write a line to standard output and answer neutrally.
/// Ownership: the vertices are shared, also between copies.
class VANTORIX_SCENE_EXPORT Polygon : public IPrimitive {
public:
    Polygon();
    Polygon(const Polygon& other);
    Polygon& operator=(const Polygon& other);

    /// Writes "Polygon::getFaceNormal() not implemented yet!"; (0, 0, 0).
    Eigen::Vector3f getFaceNormal() override;
    /// Writes "Polygon::applyTransform() not implemented yet!"; changes nothing.
    void applyTransform(const Eigen::Matrix4f& matrix) override;
    std::vector<boost::shared_ptr<Vertex>> getVertexArray() override;
    /// Writes "Polygon::intersects() not implemented yet!"; false.
    bool intersects(const Eigen::Vector3f& minimum, const Eigen::Vector3f& maximum) override;
    /// Writes "Polygon::intersects() not implemented yet!"; false.
    bool intersects(boost::shared_ptr<Ray> ray) override;
    ~Polygon() override;

    /// An empty pointer is ignored.
    void addVertex(boost::shared_ptr<Vertex> vertex);
    unsigned int getVertexCount() const;
    /// An empty pointer outside the list.
    boost::shared_ptr<Vertex> getVertexAt(unsigned int index) const;
    std::vector<boost::shared_ptr<Vertex>> getVertices() const;

    /// Writes nothing.
    void print() const;

private:
    std::vector<boost::shared_ptr<Vertex>> vertices_;
};

}  // namespace vantorix::scene
