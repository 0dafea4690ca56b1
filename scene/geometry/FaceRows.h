#pragma once

#include <algorithm>
#include <cstddef>

#include <boost/container/small_vector.hpp>
#include <boost/shared_ptr.hpp>

#include "scene/geometry/VertexValues.h"

namespace vantorix::scene {

/// The values of each corner of a face in a row of floats, where all corners have the same
/// semantics and sizes in the same order.
class FaceRows {
public:
    /// False where corners differ, or have unusual values.
    template <typename Corners>
    bool read(const Corners& corners) {
        for (const auto& corner : corners) {
            if (!corner) return false;
            const auto shape = VertexValues::shapeOf(*corner);
            if (rows_.empty()) shape_ = shape;
            if (shape != shape_ || shape == 0) return false;
            const float* const row = VertexValues::rowOf(*corner);
            rows_.push_back(row ? row : copyRow(*corner, corners.count));
        }
        return shape_ != 0;
    }

    VertexValues::Shape shape() const { return shape_; }
    std::size_t count() const { return rows_.size(); }
    const float* const* data() const { return rows_.data(); }
    const float* operator[](std::size_t corner) const { return rows_[corner]; }

private:
    /// Values of elements, which may lie in the streams that will grow.
    const float* copyRow(const Vertex& corner, std::size_t cornerCount) {
        const std::size_t size = VertexValues::floatsIn(shape_);
        copies_.resize(size * cornerCount);
        float* const row = copies_.data() + rows_.size() * size;
        float* next = row;
        VertexValues::forEach(corner, [&](const VertexValue& value) {
            next = std::copy_n(value.values, value.size, next);
        });
        return row;
    }

    VertexValues::Shape shape_ = 0;
    boost::container::small_vector<const float*, 8> rows_;
    boost::container::small_vector<float, 64> copies_;
};

}  // namespace vantorix::scene
