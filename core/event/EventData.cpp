#include "core_api/event/EventData.h"

#include <string_view>
#include <utility>

#include "core_api/utils/Matrix.h"

#include "core/event/Payload.h"

namespace vantorix::core::event {
namespace {

constexpr std::size_t longestShort = 23;

std::string argumentOf(std::string_view text, int index) {
    for (int i = 1; i < index; ++i) {
        const auto comma = text.find(',');
        if (comma == std::string_view::npos) return std::string();
        text.remove_prefix(comma + 1);
    }
    return std::string(text.substr(0, text.find(',')));
}

}  // namespace

EventData::EventData(std::string payload) : short_{} {
    if (payload.size() > longestShort) {
        payload_.reset(new Payload(std::move(payload)), false);
        return;
    }
    payload.copy(shortBytes(payload.size()), payload.size());
}

// Takes over the reference that the maker of the payload has.
EventData::EventData(const Payload* payload) : payload_(payload, false), short_{} {}

EventData EventData::joined(std::string_view first, std::string_view second) {
    const auto size = first.size() + 1 + second.size();
    if (size > longestShort) {
        std::string text;
        text.reserve(size);
        text.append(first).append(1, ',').append(second);
        return EventData(std::move(text));
    }
    EventData data(nullptr);
    auto* const bytes = data.shortBytes(size);
    first.copy(bytes, first.size());
    bytes[first.size()] = ',';
    second.copy(bytes + first.size() + 1, second.size());
    return data;
}

EventData EventData::withMatrix(std::string id, const utils::Matrix& matrix) {
    return withMatrix(std::move(id), matrix.getMatrix());
}

EventData EventData::withMatrix(std::string id, const float* elements) {
    if (!elements) return withMatrix(std::move(id), utils::Matrix(true));
    return EventData(new MatrixPayload(std::move(id), elements));
}

std::string EventData::toString() const { return std::string(text()); }

std::string EventData::getArg(int index) const {
    if (index < 1) return std::string();
    // An id can be read without making the text of the matrix behind it.
    if (payload_ && index == 1) return argumentOf(payload_->beginning(), index);
    return argumentOf(text(), index);
}

// For a text of @p size, which is short.
char* EventData::shortBytes(std::size_t size) {
    auto* const bytes = reinterpret_cast<char*>(short_.data());
    bytes[longestShort] = static_cast<char>(size);
    return bytes;
}

std::string_view EventData::text() const {
    if (payload_) return payload_->text();
    const auto* const bytes = reinterpret_cast<const char*>(short_.data());
    return std::string_view(bytes, static_cast<unsigned char>(bytes[longestShort]));
}

}  // namespace vantorix::core::event
