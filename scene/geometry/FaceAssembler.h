#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/StreamSemantic.h"
#include "scene/geometry/TupleReader.h"

namespace vantorix::scene {

class Mesh;
class PackedCorners;
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

    /// One value of a vertex.
    struct Value {
        std::size_t input;  ///< Which of the inputs holds it: with tuple, what makes it the same.
        std::size_t tuple;
        Eigen::Vector3f floats;  ///< Its first three; missing ones are 0.
    };

    /// Whether the triangle's vertex gets a value of @p semantic from the record at index @p start.
    bool hasValue(StreamSemantic semantic, std::size_t start) const {
        return value(semantic, start).input < inputs_.size();
    }
    /// Whether that holds for the first @p count records.
    bool haveValues(StreamSemantic semantic, std::size_t count) const;
    /// Whether the values of a semantic, @p size floats each, are known to differ from tuple to
    /// tuple, where it gets one.
    bool areKnownDistinct(StreamSemantic semantic, std::size_t size) const;
    /// That value; zeros, from an input of their own, when it gets none.
    Value value(StreamSemantic semantic, std::size_t start) const;

    /// Those of @p count records, from record number @p first on, take the place of @p values.
    void readValues(StreamSemantic semantic, std::size_t first, std::size_t count,
                    std::vector<Value>& values) const;

    /// The position that the triangle's vertex gets from the record at index @p start.
    Eigen::Vector3f position(std::size_t start) const {
        for (const auto& input : positions_) {
            if (const float* const tuple = find(input, start)) return input.tuples.toVector(tuple);
        }
        return Eigen::Vector3f::Zero();
    }

    /// Where positions come from no other slot than this one, three floats each: what reads them.
    std::optional<TupleReader> plainPositions(std::size_t slot) const;

private:
    /// One value of each vertex.
    struct Input {
        StreamSemantic semantic;
        std::size_t slot;  ///< List position of the mapping, which is where records are read.
        TupleReader tuples;
        bool areKnownDistinct;
    };

    void addVertices(std::size_t slot, const Mesh& mesh);
    void addInput(const StreamMapping& mapping, std::size_t slot);

    /// The last input of a semantic, which counts where it has a value; null without one.
    const Input* findLast(StreamSemantic semantic) const;
    /// Null when the record or the stream ends before.
    const float* find(const Input& input, std::size_t start) const {
        const std::size_t place = start + input.slot;
        return place < indexStream_.size() ? input.tuples.find(indexStream_[place]) : nullptr;
    }
    /// Packs the values of one corner and returns its position.
    Eigen::Vector3f pack(std::size_t corner, std::size_t start, PackedCorners& corners) const;

    const std::vector<unsigned int>& indexStream_;
    std::size_t stride_;
    std::vector<Input> inputs_;
    std::vector<Input> positions_;  // Those of inputs_, last first: the last one counts.
    std::size_t blockSize_;         // Bytes for the values of a triangle.
};

}  // namespace vantorix::scene
