#pragma once

#include <cstddef>
#include <limits>

#include <Eigen/Core>

#include "scene/geometry/Stream.h"

namespace vantorix::scene {

/// The tuples of a stream, for reading while the stream stays as it is.
class TupleReader {
public:
    explicit TupleReader(const Stream& stream) : values_(&noFloats), size_(0), count_(everyTuple) {
        // Without a positive stride every tuple exists and has no floats.
        if (stream.stride <= 0) return;
        size_ = static_cast<std::size_t>(stream.stride);
        values_ = stream.values.data();
        count_ = stream.values.size() / size_;
    }

    /// Floats per tuple.
    std::size_t size() const { return size_; }
    std::size_t count() const { return count_; }

    /// Null where the stream ends before.
    const float* find(std::size_t tuple) const {
        return tuple < count_ ? values_ + tuple * size_ : nullptr;
    }

    /// The first three floats of a tuple; missing ones are 0.
    Eigen::Vector3f toVector(const float* tuple) const {
        if (size_ >= 3) return Eigen::Map<const Eigen::Vector3f>(tuple);
        return {size_ > 0 ? tuple[0] : 0.0f, size_ > 1 ? tuple[1] : 0.0f, 0.0f};
    }

private:
    static constexpr float noFloats = 0.0f;
    static constexpr std::size_t everyTuple = std::numeric_limits<std::size_t>::max();

    const float* values_;
    std::size_t size_;
    std::size_t count_;
};

}  // namespace vantorix::scene
