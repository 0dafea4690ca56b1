#include "apps/render/ClaimedSize.h"

#include <cstdlib>

namespace vantorix::apps::render {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::uint64_t littleEndian16(const Bytes& bytes, std::size_t at) {
    return at + 2 <= bytes.size() ? bytes[at] + 256u * bytes[at + 1] : 0;
}

std::uint64_t bigEndian16(const Bytes& bytes, std::size_t at) {
    return at + 2 <= bytes.size() ? 256u * bytes[at] + bytes[at + 1] : 0;
}

/// Sides of a BMP are signed: a negative height means rows from the top.
std::uint64_t signedSide(const Bytes& bytes, std::size_t at) {
    const auto value = littleEndian16(bytes, at) + 65536 * littleEndian16(bytes, at + 2);
    const auto side = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
    return static_cast<std::uint64_t>(std::llabs(side));
}

/// Markers C0 to CF begin a frame, but for the tables C4 and CC and the reserved C8.
bool beginsFrame(unsigned marker) {
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

}  // namespace

ClaimedSize claimedSizeOfJpeg(const Bytes& bytes) {
    std::size_t at = 2;
    while (at + 4 <= bytes.size() && bytes[at] == 0xff) {
        if (bytes[at + 1] == 0xff) {  // Fill byte before a marker.
            ++at;
        } else if (beginsFrame(bytes[at + 1])) {
            return {bigEndian16(bytes, at + 7), bigEndian16(bytes, at + 5)};
        } else {
            at += 2 + bigEndian16(bytes, at + 2);
        }
    }
    return {};
}

ClaimedSize claimedSizeOfBmp(const Bytes& bytes) {
    constexpr std::uint64_t oldHeaderSize = 12;
    if (littleEndian16(bytes, 14) == oldHeaderSize) {
        return {littleEndian16(bytes, 18), littleEndian16(bytes, 20)};
    }
    return {signedSide(bytes, 18), signedSide(bytes, 22)};
}

ClaimedSize claimedSizeOfGif(const Bytes& bytes) {
    return {littleEndian16(bytes, 6), littleEndian16(bytes, 8)};
}

ClaimedSize claimedSizeOfTga(const Bytes& bytes) {
    return {littleEndian16(bytes, 12), littleEndian16(bytes, 14)};
}

}  // namespace vantorix::apps::render
