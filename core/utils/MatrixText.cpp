#include "core/utils/MatrixText.h"

#include <charconv>
#include <system_error>

namespace vantorix::core::utils {
namespace {

constexpr std::size_t elementCount = 16;

}  // namespace

char* writeMatrixText(char* out, const float* elements) {
    out = writeShortest(out, elements[0]);
    for (std::size_t i = 1; i < elementCount; ++i) {
        *out++ = ' ';
        out = writeShortest(out, elements[i]);
    }
    return out;
}

std::string matrixText(const float* elements) {
    char text[matrixTextRoom];
    return std::string(text, writeMatrixText(text, elements));
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
