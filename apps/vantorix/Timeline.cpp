#include "apps/vantorix/Timeline.h"

#include <algorithm>
#include <utility>

#include <boost/make_shared.hpp>

#include "apps/render/SceneGuard.h"
#include "apps/vantorix/LoadedModel.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {
namespace {

using scene::Sampler;

ChannelSummary summarizeChannel(const scene::Animation::Channel& channel) {
    ChannelSummary summary;
    summary.target = channel.second;
    if (!channel.first) return summary;
    const auto times = channel.first->getStreamBySemantic(Sampler::INPUT);
    const auto values = channel.first->getStreamBySemantic(Sampler::OUTPUT);
    const auto names = channel.first->getStreamBySemantic(Sampler::INTERPOLATION);
    if (times && !times->values.empty()) {
        const auto& seconds = std::as_const(*times).values;
        summary.keys = seconds.size();
        summary.first = seconds.front();
        summary.last = seconds.back();
    }
    if (values) summary.stride = values->stride;
    if (names && !names->stringValues.empty()) summary.interpolation = names->stringValues.front();
    return summary;
}

/// What the importer makes has one level of children.
void addChannels(const scene::Animation& animation, std::vector<ChannelSummary>& channels) {
    for (const auto& channel : animation.getChannelArray()) {
        channels.push_back(summarizeChannel(channel));
    }
}

std::vector<float> frameTimesOf(scene::AnimationManager& manager) {
    std::vector<float> times = std::as_const(manager).getFrameTimes();
    times.erase(std::remove_if(times.begin(), times.end(), [](float time) { return time < 0.0f; }),
                times.end());
    std::sort(times.begin(), times.end());
    return times;
}

}  // namespace

std::vector<ClipSummary> summarizeClips(const LoadedModel& model) {
    const render::SceneGuard guard(model.getScene());
    const auto manager = boost::make_shared<scene::AnimationManager>();
    manager->attach(model.getScene().shared_from_this());
    std::vector<ClipSummary> clips;
    for (const auto& animation : model.getScene().getAnimationsLibrary()) {
        manager->setAnimation(animation);
        ClipSummary clip;
        clip.id = animation->getID();
        clip.name = animation->getName();
        clip.seconds = static_cast<double>(animation->getDuration().total_milliseconds()) / 1000.0;
        clip.frameTimes = frameTimesOf(*manager);
        addChannels(*animation, clip.channels);
        for (const auto& child : animation->getChildAnimations()) {
            addChannels(*child, clip.channels);
        }
        clips.push_back(std::move(clip));
    }
    return clips;
}

}  // namespace vantorix::apps::cli
