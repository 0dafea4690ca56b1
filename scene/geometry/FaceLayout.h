#pragma once

#include <cstddef>
#include <vector>

#include <boost/container/small_vector.hpp>

#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/VertexValues.h"

namespace vantorix::scene {

/// Where the values of one semantic go while faces are added.
struct FaceColumn {
    Stream* stream;           ///< Held by its mapping.
    std::size_t slot;         ///< Of the index records.
    std::size_t start, size;  ///< In the floats of a corner.
    bool isPosition;
    bool allowsDuplicates;

    bool isUnchanged() const {
        return static_cast<std::size_t>(stream->stride) == size &&
               stream->allowDuplicates == allowsDuplicates;
    }
};

/// Where corners of one shape go: found once for many faces, as long as all that it was found from
/// is as it was.
class FaceLayout {
public:
    using Shape = VertexValues::Shape;

    using Columns = boost::container::small_vector<FaceColumn, 4>;

    FaceLayout(Shape shape, const std::vector<StreamMapping>& mappings, const Mesh* mesh,
               std::size_t stride)
        : shape_(shape), hasMesh_(mesh), stride_(stride) {
        copy(mappings, own_);
        if (mesh) copy(mesh->getVertices(), shared_);
    }

    /// Adds the column of the next value of the shape; false when the stream does not take such
    /// values, or when it is that of another column: storing column by column would have another
    /// outcome than storing corner by corner.
    bool add(Stream& stream, std::size_t slot, bool isPosition) {
        std::size_t start = 0;
        auto rest = shape_;
        for (const auto& column : columns_) {
            if (column.stream == &stream) return false;
            start += column.size;
            rest >>= VertexValues::bitsPerValue;
        }
        const FaceColumn column{
            &stream, slot, start, VertexValues::sizeIn(rest), isPosition, stream.allowDuplicates};
        if (!column.isUnchanged() || (isPosition && column.size > 3)) return false;
        columns_.push_back(column);
        return true;
    }

    bool isFor(Shape shape, const std::vector<StreamMapping>& mappings, const Mesh* mesh) const {
        if (shape != shape_ || (mesh != nullptr) != hasMesh_ || !isCopyOf(own_, mappings) ||
            (mesh && !isCopyOf(shared_, mesh->getVertices()))) {
            return false;
        }
        for (const auto& column : columns_) {
            if (!column.isUnchanged()) return false;
        }
        return true;
    }

    std::size_t stride() const { return stride_; }  ///< Of the index records.
    const Columns& columns() const { return columns_; }

private:
    struct Binding {
        StreamSemantic semantic;
        int offset;
        const Stream* stream;

        bool operator==(const StreamMapping& mapping) const {
            return semantic == mapping.semantic && offset == mapping.offset &&
                   stream == mapping.stream.get();
        }
    };
    using Bindings = boost::container::small_vector<Binding, 4>;

    static void copy(const std::vector<StreamMapping>& mappings, Bindings& bindings) {
        for (const auto& mapping : mappings) {
            bindings.push_back({mapping.semantic, mapping.offset, mapping.stream.get()});
        }
    }
    static bool isCopyOf(const Bindings& bindings, const std::vector<StreamMapping>& mappings) {
        if (bindings.size() != mappings.size()) return false;
        for (std::size_t i = 0; i < mappings.size(); ++i) {
            if (!(bindings[i] == mappings[i])) return false;
        }
        return true;
    }

    Shape shape_;
    bool hasMesh_;
    std::size_t stride_;
    Bindings own_, shared_;
    Columns columns_;
};

}  // namespace vantorix::scene
