#include "core/utils/MatrixText.h"

#include <charconv>
#include <system_error>

#include "core/utils/ShortestFloat.h"

namespace vantorix::core::utils {
namespace {

constexpr std::size_t elementCount = 16;
constexpr std::size_t longestElement = longestFloatText + 1;  // And a blank.

struct TextBuffer {
    char text[elementCount * longestElement];
    char* end = text;
};

void appendAll(TextBuffer& buffer, const float* elements) {
    buffer.end = writeShortest(buffer.end, elements[0]);
    for (std::size_t i = 1; i < elementCount; ++i) {
        *buffer.end++ = ' ';
        buffer.end = writeShortest(buffer.end, elements[i]);
    }
}

}  // namespace

std::string matrixText(const float* elements) {
    TextBuffer buffer;
    appendAll(buffer, elements);
    return std::string(buffer.text, buffer.end);
}

std::string joinMatrixText(const std::string& id, const float* elements) {
    TextBuffer buffer;
    appendAll(buffer, elements);
    std::string joined;
    joined.reserve(id.size() + 1 + static_cast<std::size_t>(buffer.end - buffer.text));
    return joined.append(id).append(1, ',').append(buffer.text, buffer.end);
}

bool readMatrixText(const std::string& text, std::array<float, 16>& elements) {
    std::array<float, elementCount> values{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t i = 0; i < elementCount; ++i) {
        if (i > 0 && (at == end || *at++ != ' ')) return false;
        const auto result = std::from_chars(at, end, values[i]);
        if (result.ec != std::errc()) return false;
        at = result.ptr;
    }
    if (at != end) return false;
    elements = values;
    return true;
}

}  // namespace vantorix::core::utils
