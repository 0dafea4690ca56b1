#pragma once

#include "scene/geometry/TrackedVector.h"

namespace vantorix::scene {

/// The floats of a stream. Acts as a std::vector<float>.
class FloatArray : public TrackedVector<float> {
public:
    using TrackedVector::TrackedVector;
    using TrackedVector::operator=;

    /// Hands out a reference, after which the array counts as being written to.
    reference emplace_back(float value = 0.0f) {
        push_back(value);
        return back();
    }
    /// Appends @p count floats from outside this array, and hands out no reference.
    void append(const float* values, size_type count) {
        edit(size(), [&] { items_.insert(items_.end(), values, values + count); });
    }

private:
    friend class KeyOrder;
    friend class PlaybackTracks;
    friend class Stream;
    friend class TupleIndex;
};

}  // namespace vantorix::scene
