#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/MeshPrimitiveBase.h"

namespace vantorix::scene {

class Triangle;

/// A list of triangles, three index records each.
class VANTORIX_SCENE_EXPORT TriangleMeshPrimitive : public MeshPrimitiveBase {
public:
    TriangleMeshPrimitive(boost::shared_ptr<Mesh> mesh, const std::vector<StreamMapping>& mappings);
    TriangleMeshPrimitive(boost::shared_ptr<Mesh> mesh, const std::vector<StreamMapping>& mappings,
                          const std::vector<unsigned int>& indexStream);

    unsigned int getCount() override;
    boost::shared_ptr<IPrimitive> getPrimitiveAt(unsigned int index) override;
    std::vector<boost::shared_ptr<IPrimitive>> getPrimitives() override;
    /// Writes "Implement me TriangleMeshPrimitive::print()".
    void print() override;

    /// Replaces the normals by smooth ones, one per position: the normalised sum of the normals of
    /// the faces around it, each weighted with the sine of its angle at its first corner.
    /// A position without faces gets a non-finite normal. They are stored in the stream of the
    /// mesh's NORMAL vertices mapping; where there is none, in a new stream in place of the
    /// primitive's own normals; where there are none either, in "VT_Calculated_Normals".
    /// Does nothing without positions.
    void recalculateVertexNormals() override;

    /// Splits each triangle into four at the midpoints of its edges, one linear step of a 1-to-4
    /// subdivision, with the winding kept. Normals and the first texture set follow when every
    /// corner of every triangle has them, everything else is dropped; equal values are stored
    /// once. An edge has one midpoint, also where neighbours run along it in opposite directions:
    /// a closed mesh stays closed. When @p controller has a skin, its vertices become the new
    /// positions, those at midpoints with the mean weights of both ends.
    /// Deliberate: all streams and vertices mappings of the mesh are replaced, also those that
    /// its other primitives refer to. So subdivide meshes of one primitive.
    /// Does nothing once the mesh is gone.
    void subDivide(boost::shared_ptr<Controller> controller) override;

    boost::shared_ptr<IMeshPrimitive> clone(boost::shared_ptr<Mesh> newMesh) override;
    ~TriangleMeshPrimitive() override;

    /// Stores the elements of the three vertices in the streams of their semantics, which are
    /// created where they are missing, and appends three index records. New streams reuse equal
    /// values when @p deduplicate is set.
    /// Deliberate: there is no rollback, a failed call may leave records and values behind; and
    /// the index of a value in a stream that keeps duplicates goes to the slot of VERTEX.
    /// @return false for an empty triangle or vertex, a value whose size is not the stride of its
    ///         stream, and a semantic without a slot (logged).
    /// @throws std::out_of_range for a position of more than three components.
    bool addTriangle(boost::shared_ptr<Triangle> triangle, bool deduplicate);

    /// What the corners of triangles have of one semantic.
    struct CornerValues {
        StreamSemantic semantic;
        int size;             ///< Floats per corner.
        const float* values;  ///< size floats for each corner, one corner after the other.
    };

    /// Adds @p triangleCount triangles as addTriangle() does one by one, and leaves the same
    /// streams, mappings and records. Each corner has an element from each of @p corners, in that
    /// order; of several with one semantic the last one counts. Several times faster than single
    /// triangles.
    /// @return false, after what addTriangle() leaves of the first triangle that fails; also, with
    ///         nothing changed, when values are missing.
    /// @throws std::out_of_range for positions of more than three components.
    /// If memory runs out, the triangles that were added until then stay, each as a whole.
    bool addTriangles(const std::vector<CornerValues>& corners, std::size_t triangleCount,
                      bool deduplicate);

    /// A new triangle with new vertices; an empty pointer past the end.
    boost::shared_ptr<Triangle> getTriangleAt(unsigned int index);

private:
    using Normals = std::vector<Eigen::Vector3f>;

    static constexpr unsigned int noVertex = std::numeric_limits<unsigned int>::max();

    bool findColumns(const std::vector<CornerValues>& corners, std::size_t stride,
                     Columns& columns);
    /// Appends @p count records, in blocks.
    void appendColumns(Columns& columns, std::size_t count, std::size_t stride);
    /// And lets @p columns go on behind them.
    void appendBlock(Columns& columns, std::size_t count, std::size_t stride);
    std::size_t listPosition(const StreamMapping* mapping) const;
    /// Per corner, what its record has in the VERTEX slot; noVertex without one.
    std::vector<unsigned int> vertexIndices() const;
    Normals calculateNormals(const Mesh& mesh, std::size_t positionSlot, std::size_t count) const;
    void storeNormals(Mesh& mesh, std::size_t positionSlot, const Normals& normals);
    /// Gives mapping @p normalSlot a new stream and its slot of the records new indices.
    void replaceOwnNormals(Mesh& mesh, std::size_t positionSlot, std::size_t normalSlot,
                           const Normals& normals);
};

}  // namespace vantorix::scene
