#include "apps/check/AnimationCheck.h"

#include <algorithm>
#include <set>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "apps/check/Report.h"
#include "apps/check/StreamCheck.h"
#include "scene/animation/Animation.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/ITransformation.h"

namespace vantorix::apps::check {
namespace {

using scene::ITransformation;
using scene::Sampler;
using scene::Stream;
using StreamPointer = boost::shared_ptr<Stream>;

/// "node/sid.component", taken apart.
struct Target {
    explicit Target(const std::string& text) : node(text.substr(0, text.find('/'))) {
        const auto slash = text.find('/'), dot = text.find('.');
        if (slash != std::string::npos) sid = text.substr(slash + 1, dot - slash - 1);
        if (dot == std::string::npos) return;
        component = text.substr(dot + 1);
        std::transform(component.begin(), component.end(), component.begin(), [](char letter) {
            return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
        });
    }

    bool hasAxis() const { return component == "x" || component == "y" || component == "z"; }

    std::string node, sid, component;
};

/// Floats per key; 0 for what cannot be animated.
int expectedStride(ITransformation::Type type, const Target& target) {
    const bool isWhole = target.component.empty();
    switch (type) {
        case ITransformation::MATRIX:
            return isWhole ? 16 : 0;
        case ITransformation::ROTATE:
            if (isWhole) return 4;
            return target.hasAxis() || target.component == "angle" || target.component == "w";
        case ITransformation::SCALE:
        case ITransformation::TRANSLATE:
            return isWhole ? 3 : target.hasAxis();
        default:
            return 0;
    }
}

class ChannelCheck {
public:
    ChannelCheck(const scene::SceneManager& scene, const Report& report)
        : scene_(scene), report_(report) {}

    void run(const Sampler* sampler, const std::string& targetText) {
        const int stride = strideOf(Target(targetText));
        if (!sampler) {
            report_.add(Finding::CHANNEL, "no sampler");
            return;
        }
        const auto input = find(*sampler, Sampler::INPUT, "INPUT");
        const auto output = find(*sampler, Sampler::OUTPUT, "OUTPUT");
        const auto names = find(*sampler, Sampler::INTERPOLATION, "INTERPOLATION");
        if (input) checkTimes(*input);
        if (output && stride > 0) requireStride(*output, "OUTPUT", stride);
        if (input && output) requireKeys("values", tuplesOf(*output), *input);
        if (input && names) requireKeys("interpolations", names->stringValues.size(), *input);
    }

private:
    int strideOf(const Target& target) {
        const auto node = scene_.getNodeByID(target.node);
        if (!node) {
            report_.add(Finding::CHANNEL, "no node " + target.node);
            return 0;
        }
        for (const auto& element : node->getOriginalTransformations()) {
            if (!element || element->getSid() != target.sid) continue;
            const int stride = expectedStride(element->getType(), target);
            report_.require(stride > 0, Finding::CHANNEL,
                            "nothing to animate in element " + target.sid);
            return stride;
        }
        report_.add(Finding::CHANNEL, "no element " + target.sid + " of node " + target.node);
        return 0;
    }

    StreamPointer find(const Sampler& sampler, Sampler::Semantic semantic, const char* name) {
        const auto stream = sampler.getStreamBySemantic(semantic);
        report_.require(stream != nullptr, Finding::CHANNEL, std::string("no stream for ") + name);
        if (stream) checkStream(*stream, report_.in(name));
        return stream;
    }

    void requireStride(const Stream& stream, const char* name, int stride) {
        report_.require(stream.stride == stride, Finding::STRIDE,
                        "stride " + std::to_string(stream.stride) + " for " + name + ", not " +
                            std::to_string(stride));
    }

    void requireKeys(const char* what, std::size_t count, const Stream& times) {
        report_.require(count == times.values.size(), Finding::CHANNEL,
                        std::to_string(count) + " " + what + " for " +
                            std::to_string(times.values.size()) + " key times");
    }

    void checkTimes(const Stream& times) {
        requireStride(times, "INPUT", 1);
        const std::vector<float>& values = times.values;
        std::vector<std::size_t> late;
        for (std::size_t i = 1; i < values.size(); ++i) {
            if (values[i] < values[i - 1]) late.push_back(i);
        }
        report_.addAt(Finding::CHANNEL, "keys before the one that they follow", late);
    }

    const scene::SceneManager& scene_;
    Report report_;
};

void checkChannels(const scene::Animation& animation, const scene::SceneManager& scene,
                   const Report& report) {
    std::size_t number = 0;
    for (const auto& [sampler, target] : animation.getChannelArray()) {
        const auto place = "channel " + std::to_string(number++) + " (" + target + ")";
        ChannelCheck(scene, report.in(place)).run(sampler.get(), target);
    }
}

}  // namespace

void checkAnimation(const scene::Animation& animation, const scene::SceneManager& scene,
                    const Report& report) {
    using Pending = std::pair<boost::shared_ptr<scene::Animation>, Report>;
    std::vector<Pending> pending;
    std::set<const scene::Animation*> known{&animation};
    const auto visit = [&](const scene::Animation& visited, const Report& place) {
        checkChannels(visited, scene, place);
        const auto children = visited.getChildAnimations();
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            if (known.insert(child->get()).second) {
                pending.emplace_back(*child, report.in((*child)->getID()));
            }
        }
    };
    visit(animation, report);
    while (!pending.empty()) {
        const auto [child, place] = pending.back();
        pending.pop_back();
        visit(*child, place);
    }
}

}  // namespace vantorix::apps::check
