#include "scene/geometry/FaceLayout.h"

namespace vantorix::scene {

void FaceColumn::insertCopies(const FaceRows& rows, int* indices, const int* keys) const {
    boost::container::small_vector<float, 32> values;
    for (std::size_t i = 0; i < rows.count(); ++i) {
        const float* const value = rows[i] + start_;
        values.insert(values.end(), value, value + size_);
    }
    stream_->insertEach(values.data(), rows.count(), indices, keys);
}

}  // namespace vantorix::scene
