#include "scene/geometry/BoxRules.h"

#include <stdexcept>

#include "scene/geometry/Stream.h"

namespace vantorix::scene {

Eigen::Vector3f makeSample(const float* values, int size) {
    if (size > 3) throw std::out_of_range("invalid vector<T> subscript");
    Eigen::Vector3f sample = Eigen::Vector3f::Zero();
    for (int i = 0; i < size; ++i) sample[i] = values[i];
    return sample;
}

bool readSample(const Stream& stream, std::size_t tuple, Eigen::Vector3f& sample) {
    const auto size = stream.stride > 0 ? static_cast<std::size_t>(stream.stride) : 0;
    if (size > 0 && tuple >= stream.values.size() / size) return false;
    sample = makeSample(stream.values.data() + tuple * size, stream.stride);
    return true;
}

}  // namespace vantorix::scene
