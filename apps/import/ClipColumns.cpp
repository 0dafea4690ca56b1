#include "apps/import/ClipColumns.h"

#include <array>

#include "apps/import/ImportError.h"

namespace vantorix::apps::import {
namespace {

struct Kind {
    ModelKeys ModelChannel::*keys;
    std::size_t components;
};

constexpr std::array<Kind, 3> kinds = {
    {{&ModelChannel::positions, 3}, {&ModelChannel::rotations, 4}, {&ModelChannel::scales, 3}}};

void append(const std::vector<float>& part, std::vector<float>& whole) {
    whole.insert(whole.end(), part.begin(), part.end());
}

/// Takes floats from the front of a column.
class Column {
public:
    explicit Column(const std::vector<float>& floats) : floats_(floats) {}

    std::vector<float> take(std::uint64_t count) {
        if (count > floats_.size() - taken_) throw RefusedError("broken key counts");
        const auto first = floats_.begin() + static_cast<std::ptrdiff_t>(taken_);
        taken_ += static_cast<std::size_t>(count);
        return {first, first + static_cast<std::ptrdiff_t>(count)};
    }

private:
    const std::vector<float>& floats_;
    std::size_t taken_ = 0;
};

}  // namespace

ClipColumns::ClipColumns(const std::vector<ModelChannel>& channels) {
    for (const auto& channel : channels) {
        nodes.push_back(channel.node);
        for (const auto& kind : kinds) {
            const auto& keys = channel.*kind.keys;
            counts.push_back(static_cast<std::uint32_t>(keys.times.size()));
            append(keys.times, times);
            append(keys.values, values);
        }
    }
}

std::vector<ModelChannel> ClipColumns::toChannels() const {
    if (counts.size() != nodes.size() * kinds.size()) throw RefusedError("broken channel counts");
    Column timeColumn(times), valueColumn(values);
    std::vector<ModelChannel> channels(nodes.size());
    auto count = counts.begin();
    for (std::size_t i = 0; i < channels.size(); ++i) {
        channels[i].node = nodes[i];
        for (const auto& kind : kinds) {
            auto& keys = channels[i].*kind.keys;
            keys.times = timeColumn.take(*count);
            keys.values = valueColumn.take(std::uint64_t{*count++} * kind.components);
        }
    }
    return channels;
}

}  // namespace vantorix::apps::import
