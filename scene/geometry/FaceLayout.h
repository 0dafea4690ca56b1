#pragma once

#include <cstddef>
#include <vector>

#include <boost/container/small_vector.hpp>

#include "scene/geometry/FaceRows.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/TupleIndex.h"
#include "scene/geometry/VertexValues.h"

namespace vantorix::scene {

/// Where the values of one semantic go while faces are added.
class FaceColumn {
public:
    /// @param start  where the values lie in the floats of a corner
    FaceColumn(Stream& stream, std::size_t slot, std::size_t start, std::size_t size,
               bool isPosition)
        : stream_(&stream),
          slot_(slot),
          start_(start),
          size_(size),
          isPosition_(isPosition),
          allowsDuplicates_(stream.allowDuplicates) {}

    /// Whether the stream takes values of that size, by the same rule as at first.
    bool isUsable() const {
        return static_cast<std::size_t>(stream_->stride) == size_ &&
               stream_->allowDuplicates == allowsDuplicates_;
    }

    const Stream* stream() const { return stream_; }
    std::size_t slot() const { return slot_; }  ///< Of the index records.
    std::size_t start() const { return start_; }
    std::size_t size() const { return size_; }
    bool isPosition() const { return isPosition_; }
    bool allowsDuplicates() const { return allowsDuplicates_; }

    /// Asks for the memory that insert() will search.
    void fetch(const FaceRows& rows, const int* keys) const {
        if (!stream_->index_) return;
        stream_->index_->fetchFew(size_, rows.data(), start_, rows.count(), keys);
    }

    /// Inserts the value of each corner, with the keys of TupleIndex::insertAll.
    /// @return whether there were new ones among them.
    bool insert(const FaceRows& rows, int* indices, const int* keys) const {
        const std::size_t before = stream_->values.size();
        if (!insertAtOnce(rows, indices, keys)) insertCopies(rows, indices, keys);
        return stream_->values.size() != before;
    }

private:
    bool insertAtOnce(const FaceRows& rows, int* indices, const int* keys) const {
        if (allowsDuplicates_ || !stream_->index_ || !TupleIndex::isUsableOn(stream_->values)) {
            return false;
        }
        const auto appended = stream_->index_->insertFew(stream_->values, size_, rows.data(),
                                                         start_, rows.count(), indices, keys);
        if (!appended) return false;
        // Unsigned: a counter that a caller has set to the largest number wraps around.
        stream_->count = static_cast<int>(static_cast<unsigned int>(stream_->count) + *appended);
        return true;
    }
    void insertCopies(const FaceRows& rows, int* indices, const int* keys) const;

    Stream* stream_;  // Held by its mapping.
    std::size_t slot_, start_, size_;
    bool isPosition_;
    bool allowsDuplicates_;
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
            if (column.stream() == &stream) return false;
            start += column.size();
            rest >>= VertexValues::bitsPerValue;
        }
        const std::size_t size = VertexValues::sizeIn(rest);
        const FaceColumn column(stream, slot, start, size, isPosition);
        if (!column.isUsable() || (isPosition && size > 3)) return false;
        columns_.push_back(column);
        return true;
    }

    bool isFor(Shape shape, const std::vector<StreamMapping>& mappings, const Mesh* mesh) const {
        if (shape != shape_ || (mesh != nullptr) != hasMesh_ || !isCopyOf(own_, mappings) ||
            (mesh && !isCopyOf(shared_, mesh->getVertices()))) {
            return false;
        }
        for (const auto& column : columns_) {
            if (!column.isUsable()) return false;
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
