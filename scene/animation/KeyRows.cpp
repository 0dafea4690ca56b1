#include "scene/animation/KeyRows.h"

#include <algorithm>

#include "scene/animation/PlaybackTracks.h"

namespace vantorix::scene {
namespace {

/// A cache line of a stream holds about as many.
constexpr std::size_t keysPerBlock = 4;

}  // namespace

bool KeyRows::makeRoom(std::size_t keyCount) {
    blocks_.assign((keyCount + keysPerBlock - 1) / keysPerBlock, NEVER_NEEDED);
    keyCount_ = keyCount;
    floats_.reset(static_cast<float*>(std::calloc(keyCount * rowLength(), sizeof(float))));
    return floats_ != nullptr;
}

void KeyRows::seek(const KeyInterval& interval, const std::vector<Track>& tracks) {
    earlier_ = nullptr;
    if (interval.endKey == 0) return;
    const auto key = interval.endKey - 1;
    const bool isInOneBlock = interval.endKey % keysPerBlock != 0;
    const bool hasEarlier = provide(key, tracks);
    const bool hasLater = isInOneBlock ? hasEarlier : provide(interval.endKey, tracks);
    if (hasEarlier && hasLater) earlier_ = floats_.get() + key * rowLength();
}

bool KeyRows::provide(std::size_t key, const std::vector<Track>& tracks) {
    auto& block = blocks_[key / keysPerBlock];
    if (block == NEEDED_ONCE) copyBlock(key / keysPerBlock * keysPerBlock, tracks);
    block = block == NEVER_NEEDED ? NEEDED_ONCE : COPIED;
    return block == COPIED;
}

void KeyRows::copyBlock(std::size_t firstKey, const std::vector<Track>& tracks) {
    constexpr std::size_t tracksAhead = 24;
    const auto keyCount = std::min(keysPerBlock, keyCount_ - firstKey);
    float* column = floats_.get() + firstKey * rowLength();
    for (auto i = first_; i < end_; ++i, column += lineWidth) {
        const Track& ahead = tracks[std::min(i + tracksAhead, end_ - 1)];
        __builtin_prefetch(ahead.values + firstKey * ahead.width);
        __builtin_prefetch(ahead.values + (firstKey + keyCount) * ahead.width - 1);
        const std::size_t width = tracks[i].width;
        const float* const values = tracks[i].values + firstKey * width;
        for (std::size_t key = 0; key < keyCount; ++key) {
            std::copy_n(values + key * width, width, column + key * rowLength());
        }
    }
}

}  // namespace vantorix::scene
