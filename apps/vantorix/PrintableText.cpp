#include "apps/vantorix/PrintableText.h"

#include <cstdint>

#include <fmt/format.h>

namespace vantorix::apps::cli {
namespace {

/// One character of a UTF-8 text. Length 0: the byte begins no valid character.
struct Character {
    std::uint32_t code = 0;
    std::size_t length = 0;
};

/// Bytes of the character that begins with @p lead, 0 for none.
std::size_t lengthOf(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xc2 && lead < 0xe0) return 2;
    if (lead >= 0xe0 && lead < 0xf0) return 3;
    return lead >= 0xf0 && lead < 0xf5 ? 4 : 0;
}

bool isValid(std::uint32_t code, std::size_t length) {
    constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};  // Longer than needed is wrong.
    const bool isSurrogate = code >= 0xd800 && code < 0xe000;
    return code >= least[length] && code < 0x110000 && !isSurrogate;
}

Character characterAt(const std::string& text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lengthOf(lead);
    if (length == 0 || at + length > text.size()) return {};
    std::uint32_t code = length == 1 ? lead : lead & (0x7fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xc0) != 0x80) return {};
        code = code << 6 | (next & 0x3f);
    }
    return isValid(code, length) ? Character{code, length} : Character{};
}

bool isControl(std::uint32_t code) {
    const bool turnsWriting = (code >= 0x202a && code <= 0x202e) ||
                              (code >= 0x2066 && code <= 0x2069) || code == 0x200e ||
                              code == 0x200f || code == 0x061c;
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || code == 0x2028 || code == 0x2029 ||
           turnsWriting;
}

std::string escaped(std::uint32_t code) {
    if (code == '\n') return "\\n";
    if (code == '\r') return "\\r";
    if (code == '\t') return "\\t";
    return code < 0x100 ? fmt::format("\\x{:02x}", code) : fmt::format("\\u{:04x}", code);
}

}  // namespace

std::string printable(const std::string& text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const Character character = characterAt(text, at);
        if (character.length == 0) {
            result += escaped(static_cast<unsigned char>(text[at]));
            ++at;
            continue;
        }
        result +=
            isControl(character.code) ? escaped(character.code) : text.substr(at, character.length);
        at += character.length;
    }
    return result;
}

}  // namespace vantorix::apps::cli
