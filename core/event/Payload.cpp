#include "core/event/Payload.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "core/utils/MatrixText.h"

namespace vantorix::core::event {

void intrusive_ptr_add_ref(const Payload* payload) {
    payload->uses_.fetch_add(1, std::memory_order_relaxed);
}

void intrusive_ptr_release(const Payload* payload) {
    // Nobody else can begin to use what has one use only: most payloads are spared the subtraction.
    if (payload->uses_.load(std::memory_order_acquire) == 1 ||
        payload->uses_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete payload;
    }
}

MatrixPayload::MatrixPayload(std::string&& id, const float* elements)
    : Payload(std::move(id)), matrix_() {
    std::copy_n(elements, matrix_.size(), matrix_.begin());
}

MatrixPayload::~MatrixPayload() { delete[] rendered_.load(std::memory_order_relaxed); }

std::string_view MatrixPayload::text() const {
    const auto* const known = rendered_.load(std::memory_order_acquire);
    return known ? std::string_view(known, renderedSize_.load(std::memory_order_relaxed))
                 : render();
}

std::string_view MatrixPayload::render() const {
    const auto& id = beginning();
    char matrix[utils::matrixTextRoom];
    const auto matrixSize =
        static_cast<std::size_t>(utils::writeMatrixText(matrix, matrix_.data()) - matrix);
    const std::size_t size = id.size() + 1 + matrixSize;
    std::unique_ptr<char[]> fresh(new char[size]);
    std::memcpy(fresh.get(), id.data(), id.size());
    fresh[id.size()] = ',';
    std::memcpy(fresh.get() + id.size() + 1, matrix, matrixSize);
    renderedSize_.store(size, std::memory_order_relaxed);
    const char* known = nullptr;
    if (rendered_.compare_exchange_strong(known, fresh.get())) known = fresh.release();
    return std::string_view(known, size);
}

}  // namespace vantorix::core::event
