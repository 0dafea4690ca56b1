#include "core/event/Payload.h"

#include <algorithm>
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

MatrixPayload::MatrixPayload(std::string id, const float* elements)
    : Payload(std::move(id)), matrix_() {
    std::copy_n(elements, matrix_.size(), matrix_.begin());
}

MatrixPayload::~MatrixPayload() { delete rendered_.load(std::memory_order_relaxed); }

const std::string& MatrixPayload::text() const {
    const auto* known = rendered_.load(std::memory_order_acquire);
    return known ? *known : render();
}

const std::string& MatrixPayload::render() const {
    const auto* fresh = new std::string(utils::joinMatrixText(beginning(), matrix_.data()));
    const std::string* known = nullptr;
    if (rendered_.compare_exchange_strong(known, fresh)) return *fresh;
    delete fresh;
    return *known;
}

}  // namespace vantorix::core::event
