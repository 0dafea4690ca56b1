#pragma once

#include <cstddef>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/MeshPrimitiveBase.h"

namespace vantorix::scene {

class Polygon;

/// A list of polygons, one index record per corner. Polygons are stored, but read back without
/// values: callers that need them read the streams. Corner counts far beyond what the streams hold
/// are cut: those of one polygon, and the sum of all that one call reads.
class VANTORIX_SCENE_EXPORT PolygonMeshPrimitive : public MeshPrimitiveBase {
public:
    PolygonMeshPrimitive(boost::shared_ptr<Mesh> mesh, const std::vector<StreamMapping>& mappings);
    /// @p polygonStream holds two values per polygon: corner count, and the position in
    /// @p indexStream (in indices, not records) where its first record starts.
    PolygonMeshPrimitive(boost::shared_ptr<Mesh> mesh, const std::vector<StreamMapping>& mappings,
                         const std::vector<unsigned int>& indexStream,
                         const std::vector<unsigned int>& polygonStream);

    unsigned int getCount() override;
    boost::shared_ptr<IPrimitive> getPrimitiveAt(unsigned int index) override;
    std::vector<boost::shared_ptr<IPrimitive>> getPrimitives() override;
    /// Writes "Implement me PolygonMeshPrimitive::print()".
    void print() override;
    /// Writes "PolygonMeshPrimitive::recalculateVertexNormals(): Implement me!".
    void recalculateVertexNormals() override;
    /// Writes "PolygonMeshPrimitive::subDivide(): Implement me!".
    void subDivide(boost::shared_ptr<Controller> controller) override;
    boost::shared_ptr<IMeshPrimitive> clone(boost::shared_ptr<Mesh> newMesh) override;
    ~PolygonMeshPrimitive() override;

    /// Deliberate: polygons given to the constructor count with their corners after fan
    /// triangulation, 3 * (corners - 2); polygons that are added count with their corners.
    virtual int getTotalVertexCount();
    virtual const std::vector<unsigned int>& getPolygonStream() const;

    /// As TriangleMeshPrimitive::addTriangle, for all corners of @p polygon.
    bool addPolygon(boost::shared_ptr<Polygon> polygon, bool deduplicate);

    /// A new polygon whose vertices have no elements; an empty pointer for an @p index above twice
    /// the length of the polygon stream, an empty polygon from getCount() up to there.
    boost::shared_ptr<Polygon> getPolygonAt(unsigned int index);

private:
    /// With at most @p most corners.
    boost::shared_ptr<Polygon> assemblePolygon(unsigned int index, std::size_t most) const;
    /// What is written for each vertex that is read back.
    void printUnhandledInputs() const;

    std::vector<unsigned int> polygonStream_;
    int totalVertexCount_;
};

}  // namespace vantorix::scene
