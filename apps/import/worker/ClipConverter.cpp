#include "apps/import/worker/ClipConverter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_set>

#include <assimp/anim.h>

#include "apps/import/worker/AssimpValues.h"
#include "apps/import/worker/NodeNames.h"

namespace vantorix::apps::import {
namespace {

/// For files that do not say.
constexpr double usualTicksPerSecond = 25.0;

using Vector = std::array<float, 3>;
using Quaternion = std::array<float, 4>;

bool convertValue(const aiVector3D& source, Vector& value) {
    value = {source.x, source.y, source.z};
    return isFinite(source);
}

/// Brought to unit length.
bool convertValue(const aiQuaternion& source, Quaternion& value) {
    const float length = std::hypot(std::hypot(source.x, source.y), std::hypot(source.z, source.w));
    if (!std::isfinite(length) || !(length > 1e-20f)) return false;
    value = {source.x / length, source.y / length, source.z / length, source.w / length};
    return true;
}

template <typename Value>
struct Key {
    float time;
    Value value;
};

/// Of keys of one time the last one counts.
template <typename Value>
ModelKeys inOrder(std::vector<Key<Value>>& keys) {
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto& a, const auto& b) { return a.time < b.time; });
    ModelKeys result;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i + 1 < keys.size() && keys[i + 1].time <= keys[i].time) continue;
        result.times.push_back(keys[i].time);
        result.values.insert(result.values.end(), keys[i].value.begin(), keys[i].value.end());
    }
    return result;
}

/// @param dropped is raised by the number of keys that cannot be used.
template <typename Value, typename Source>
ModelKeys convertKeys(const Source* source, unsigned int count, double ticksPerSecond,
                      std::size_t& dropped) {
    std::vector<Key<Value>> keys;
    for (unsigned int i = 0; source && i < count; ++i) {
        const double time = source[i].mTime / ticksPerSecond;
        Value value{};
        if (std::abs(time) <= longestClip && convertValue(source[i].mValue, value)) {
            keys.push_back({static_cast<float>(time), value});
        } else {
            ++dropped;
        }
    }
    return inOrder(keys);
}

float lastTime(const ModelChannel& channel) {
    float last = 0.0f;
    for (const auto* const keys : {&channel.positions, &channel.rotations, &channel.scales}) {
        if (!keys->times.empty()) last = std::max(last, keys->times.back());
    }
    return last;
}

bool hasKeys(const ModelChannel& channel) {
    return !channel.positions.times.empty() || !channel.rotations.times.empty() ||
           !channel.scales.times.empty();
}

}  // namespace

void ClipConverter::convert(const aiAnimation& source, std::vector<ModelClip>& clips) {
    count(source);
    const double given = source.mTicksPerSecond;
    const double ticksPerSecond = std::isfinite(given) && given > 0.0 ? given : usualTicksPerSecond;
    ModelClip clip;
    clip.name = textOf(source.mName);
    convertChannels(source, ticksPerSecond, clip);
    const double duration = source.mDuration / ticksPerSecond;
    if (duration > 0.0 && duration <= longestClip) clip.duration = static_cast<float>(duration);
    for (const auto& channel : clip.channels) {
        clip.duration = std::max(clip.duration, lastTime(channel));
    }
    if (source.mNumMeshChannels > 0 || source.mNumMorphMeshChannels > 0) {
        note(clip, "changes of meshes dropped");
    }
    if (!clip.channels.empty() && clip.duration >= 0.001f) {
        clips.push_back(std::move(clip));
    } else {
        note(clip, "moves nothing and is left out");
    }
}

/// Before anything is copied.
void ClipConverter::count(const aiAnimation& source) {
    totals_.channels += source.mNumChannels;
    totals_.requireWithin(limits_);
    for (unsigned int i = 0; source.mChannels && i < source.mNumChannels; ++i) {
        const aiNodeAnim* const channel = source.mChannels[i];
        if (!channel) continue;
        totals_.keys += channel->mNumPositionKeys;
        totals_.keys += channel->mNumRotationKeys;
        totals_.keys += channel->mNumScalingKeys;
    }
    totals_.requireWithin(limits_);
}

void ClipConverter::convertChannels(const aiAnimation& source, double ticksPerSecond,
                                    ModelClip& clip) {
    std::unordered_set<std::uint32_t> taken;
    std::size_t dropped = 0;
    for (unsigned int i = 0; source.mChannels && i < source.mNumChannels; ++i) {
        const aiNodeAnim* const given = source.mChannels[i];
        if (!given) continue;
        const auto node = nodes_.find(textOf(given->mNodeName));
        if (!node || !taken.insert(*node).second) {
            note(clip, "channel of \"" + textOf(given->mNodeName) + "\" dropped: " +
                           (node ? "the node has another one" : "there is no such node"));
            continue;
        }
        ModelChannel channel;
        channel.node = *node;
        channel.positions = convertKeys<Vector>(given->mPositionKeys, given->mNumPositionKeys,
                                                ticksPerSecond, dropped);
        channel.rotations = convertKeys<Quaternion>(given->mRotationKeys, given->mNumRotationKeys,
                                                    ticksPerSecond, dropped);
        channel.scales = convertKeys<Vector>(given->mScalingKeys, given->mNumScalingKeys,
                                             ticksPerSecond, dropped);
        if (hasKeys(channel)) clip.channels.push_back(std::move(channel));
    }
    if (dropped > 0) note(clip, std::to_string(dropped) + " keys that are no numbers dropped");
}

void ClipConverter::note(const ModelClip& clip, const std::string& what) {
    report_.add("animation \"" + clip.name + "\": " + what);
}

}  // namespace vantorix::apps::import
