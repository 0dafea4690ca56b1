#pragma once

#include <string>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "scene/animation/Animation.h"
#include "scene/animation/ChannelTarget.h"

namespace vantorix::scene {

/// A channel as its animation keeps it: the target text is parsed once.
struct Animation::ParsedChannel {
    ParsedChannel(boost::shared_ptr<Sampler> channelSampler, std::string targetText)
        : sampler(std::move(channelSampler)), text(std::move(targetText)), target(text) {}

    boost::shared_ptr<Sampler> sampler;
    std::string text;
    ChannelTarget target;
};

}  // namespace vantorix::scene
