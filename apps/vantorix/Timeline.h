#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vantorix::apps::cli {

class LoadedModel;

/// One channel of an animation or of its children.
struct ChannelSummary {
    std::string target;
    std::size_t keys = 0;
    int stride = 0;      ///< Floats per key.
    float first = 0.0f;  ///< Seconds.
    float last = 0.0f;
    std::string interpolation;  ///< Of the first key.
};

struct ClipSummary {
    std::string id, name;
    double seconds = 0.0;
    std::vector<float> frameTimes;  ///< From 0 on, in order.
    std::vector<ChannelSummary> channels;
};

/// All animations of the model's scene, under the scene lock.
std::vector<ClipSummary> summarizeClips(const LoadedModel& model);

}  // namespace vantorix::apps::cli
