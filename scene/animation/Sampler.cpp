#include "scene/animation/Sampler.h"

#include <algorithm>
#include <array>
#include <utility>

#include "scene/animation/AnimationEdits.h"
#include "scene/geometry/Stream.h"

namespace vantorix::scene {
namespace {

constexpr std::array<const char*, 5> semanticNames = {"INPUT", "OUTPUT", "IN_TANGENT",
                                                      "OUT_TANGENT", "INTERPOLATION"};

}  // namespace

Sampler::Sampler(std::string id) : id_(std::move(id)) {}

Sampler::Sampler(const Sampler& other) = default;

Sampler& Sampler::operator=(const Sampler& other) {
    id_ = other.id_;
    semantics_ = other.semantics_;
    streams_ = other.streams_;
    animationEdits.note();
    return *this;
}

Sampler::~Sampler() = default;

void Sampler::addInput(std::string semantic, boost::shared_ptr<Stream> stream) {
    const auto* const name = std::find(semanticNames.begin(), semanticNames.end(), semantic);
    if (name == semanticNames.end()) return;
    semantics_.push_back(static_cast<Semantic>(name - semanticNames.begin()));
    streams_.push_back(std::move(stream));
    animationEdits.note();
}

boost::shared_ptr<Stream> Sampler::getStreamBySemantic(Semantic semantic) const {
    const auto found = std::find(semantics_.begin(), semantics_.end(), semantic);
    if (found == semantics_.end()) return {};
    return streams_[static_cast<std::size_t>(found - semantics_.begin())];
}

}  // namespace vantorix::scene
