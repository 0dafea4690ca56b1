#pragma once

#include <cstddef>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {

class Mesh;
class PackedCorners;
class Stream;
class StreamMapping;
class Triangle;

/// Reads the values of index records: how the mappings of a primitive, and those of its mesh, lead
/// from a record to floats is worked out once for many faces.
///
/// Whatever a record names that does not exist is skipped. Valid while mappings, streams and index
/// stream stay as they are.
class FaceAssembler {
public:
    /// @param mesh may be null: then nothing is read through VERTEX.
    FaceAssembler(const std::vector<StreamMapping>& mappings, const Mesh* mesh,
                  const std::vector<unsigned int>& indexStream, std::size_t stride);

    /// The triangle of the three records from index @p start on.
    boost::shared_ptr<Triangle> makeTriangle(std::size_t start) const;

    /// The position that the triangle's vertex gets from the record at index @p start.
    Eigen::Vector3f position(std::size_t start) const;

private:
    /// One value of each vertex.
    struct Input {
        StreamSemantic semantic;
        std::size_t slot;  ///< List position of the mapping, which is where records are read.
        const float* values;
        std::size_t size;
        std::size_t tuples;
    };

    void addVertices(std::size_t slot, const Mesh& mesh);
    void addInput(StreamSemantic semantic, std::size_t slot, const Stream* stream);
    /// Null when the record or the stream ends before.
    const float* find(const Input& input, std::size_t start) const;

    const std::vector<unsigned int>& indexStream_;
    std::size_t stride_;
    std::vector<Input> inputs_;
    std::vector<Input> positions_;  // Those of inputs_, last first: the last one counts.
    std::size_t blockSize_;         // Bytes for the values of a triangle.
};

}  // namespace vantorix::scene
