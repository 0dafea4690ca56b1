#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "scene/geometry/FaceAssembler.h"
#include "scene/geometry/RefinedValues.h"
#include "scene/geometry/StreamMapping.h"

namespace vantorix::scene {

class Mesh;
class RefinedInfluences;

/// The split of a list of triangles, each into four at the midpoints of its edges. It is prepared
/// beside the mesh, so that a failure half-way leaves the mesh as it was.
class TriangleSplit {
public:
    /// @param faces  reads the records of @p count triangles.
    TriangleSplit(const FaceAssembler& faces, std::size_t count);

    /// @param influences  when not null, gets those of each new position, in order.
    /// @param vertices    per corner of each triangle, the vertex of the skin.
    void run(RefinedInfluences* influences, const std::vector<unsigned int>& vertices);

    std::vector<unsigned int>& indices() { return indices_; }
    /// How the new records lead to the new streams, through the vertices mappings @p verticesID.
    std::vector<StreamMapping> makeMappings(const std::string& verticesID) const;
    /// Replaces all streams and vertices mappings of @p mesh.
    void storeStreams(Mesh& mesh) const;

private:
    /// Whether each corner of each triangle has a value; false without triangles.
    bool areComplete(StreamSemantic semantic) const;
    std::size_t recordSize() const;

    /// Empty as long as corners are numbered as those of the positions are.
    using OwnPlaces = std::optional<SplitPlaces>;

    /// All semantics of @p count triangles.
    void readBlock(std::size_t first, std::size_t count);
    template <typename Values>
    void readBeside(Values& values, StreamSemantic semantic, OwnPlaces& places, std::size_t first,
                    std::size_t count);
    template <typename Values>
    void storeBeside(Values& values, OwnPlaces& places, std::size_t first, std::size_t count,
                     std::size_t slot);
    template <typename Values, typename OnNew>
    void store(Values& values, const SplitPlaces& places, std::size_t first, std::size_t count,
               std::size_t slot, OnNew onNew);

    const FaceAssembler& faces_;
    std::size_t count_;
    RefinedValues<3> positions_;
    std::optional<RefinedValues<3>> normals_;
    std::optional<RefinedValues<2>> textureCoordinates_;
    SplitPlaces positionPlaces_;
    OwnPlaces normalPlaces_, texturePlaces_;
    std::vector<unsigned int> indices_;
};

}  // namespace vantorix::scene
