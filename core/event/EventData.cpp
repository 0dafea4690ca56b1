#include "core_api/event/EventData.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core_api/utils/Matrix.h"

#include "core/utils/MatrixText.h"

namespace vantorix::core::event {

/// A text that is made on demand. Readers may race: the first finished text is kept.
class EventData::MatrixPayload : public Payload {
public:
    MatrixPayload(std::string id, const float* elements) : Payload(std::move(id)) {
        std::copy_n(elements, matrix_.size(), matrix_.begin());
    }
    ~MatrixPayload() override { delete rendered_.load(); }

    const std::string& text() const override {
        const auto* known = rendered_.load(std::memory_order_acquire);
        return known ? *known : render();
    }

private:
    const std::string& render() const {
        const auto* fresh = new std::string(utils::joinMatrixText(Payload::text(), matrix_.data()));
        const std::string* known = nullptr;
        if (rendered_.compare_exchange_strong(known, fresh)) return *fresh;
        delete fresh;
        return *known;
    }

    std::array<float, 16> matrix_;
    mutable std::atomic<const std::string*> rendered_{nullptr};
};

EventData::Payload::~Payload() = default;

EventData::EventData(std::string payload)
    : payload_(payload.empty() ? nullptr : new Payload(std::move(payload))) {}

EventData::EventData(Payload* payload) : payload_(payload) {}

EventData EventData::withMatrix(std::string id, const utils::Matrix& matrix) {
    return EventData(new MatrixPayload(std::move(id), matrix.getMatrix()));
}

EventData EventData::withMatrix(std::string id, const float* elements) {
    if (!elements) return withMatrix(std::move(id), utils::Matrix(true));
    return EventData(new MatrixPayload(std::move(id), elements));
}

const std::string& EventData::toString() const& {
    static const std::string none;
    return payload_ ? payload_->text() : none;
}

std::string EventData::getArg(int index) const {
    if (index < 1) return std::string();
    const std::string& text = toString();
    std::size_t begin = 0;
    for (int i = 1; i < index; ++i) {
        const auto comma = text.find(',', begin);
        if (comma == std::string::npos) return std::string();
        begin = comma + 1;
    }
    return text.substr(begin, text.find(',', begin) - begin);
}

}  // namespace vantorix::core::event
