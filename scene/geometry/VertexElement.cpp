#include "scene/geometry/VertexElement.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include "scene/geometry/BlockAllocation.h"

namespace vantorix::scene {

boost::shared_ptr<VertexElement> VertexElement::create(StreamSemantic semantic, int size,
                                                       const float* values) {
    const auto count = static_cast<std::size_t>(std::max(size, 0));
    return makeBlock<VertexElement>(count * sizeof(float), [&](void* place, void* trailing) {
        auto* const element = new (place) VertexElement;
        element->semantic = semantic;
        element->size = static_cast<int>(count);
        element->values = new (trailing) float[count];
        if (values) {
            std::copy_n(values, count, element->values);
        } else {
            std::fill_n(element->values, count, 0.0f);
        }
        return element;
    });
}

Eigen::Vector4f VertexElement::toEigenVector() const {
    Eigen::Vector4f vector(0.0f, 0.0f, 0.0f, 1.0f);
    if (!values) return vector;
    for (int i = 0; i < std::min(size, 4); ++i) vector[i] = values[i];
    return vector;
}

}  // namespace vantorix::scene
