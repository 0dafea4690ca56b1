#include "scene/animation/AnimationManager.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include <Eigen/Geometry>
#include <boost/date_time/posix_time/posix_time_duration.hpp>

#include "scene/animation/AnimationChannel.h"
#include "scene/animation/AnimationPlayback.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/KeyTimes.h"
#include "scene/animation/PlaybackClock.h"
#include "scene/geometry/LogWriters.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/AxisAngle.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::scene {

using boost::posix_time::time_duration;

namespace {

using SidList = std::vector<std::string>;

bool contains(const SidList& sids, const std::string& sid) {
    return std::find(sids.begin(), sids.end(), sid) != sids.end();
}

int wholeMillisecondsOf(const time_duration& duration) {
    const std::int64_t longest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(duration.total_milliseconds(), longest));
}

/// Look-at and skew elements give the identity.
Eigen::Affine3f matrixOf(const ITransformation& element) {
    Eigen::Affine3f matrix = Eigen::Affine3f::Identity();
    if (const auto* const whole = dynamic_cast<const TransformationMatrix*>(&element)) {
        matrix.matrix() = Eigen::Map<const Eigen::Matrix4f>(whole->getMatrix().getMatrix());
    } else if (const auto* const rotate = dynamic_cast<const TransformationRotate*>(&element)) {
        matrix.linear() = rotationAbout(toEigen(rotate->getRotationAxis()), rotate->getAngle());
    } else if (const auto* const scaling = dynamic_cast<const TransformationScale*>(&element)) {
        matrix.linear() = toEigen(scaling->getScale()).asDiagonal();
    } else if (const auto* const move = dynamic_cast<const TransformationTranslate*>(&element)) {
        matrix.translation() = toEigen(move->getTranslation());
    }
    return matrix;
}

Eigen::Matrix4f untargetedProduct(const Node& node, const SidList& targeted) {
    Eigen::Matrix4f product = Eigen::Matrix4f::Identity();
    for (const auto& element : node.getOriginalTransformations()) {
        if (element && !contains(targeted, element->getSid())) {
            product = (product * matrixOf(*element).matrix()).eval();
        }
    }
    return product;
}

}  // namespace

AnimationManager::AnimationManager()
    : clock_(std::make_unique<PlaybackClock>()),
      playback_(std::make_unique<AnimationPlayback>(logger_)) {
    addConsoleWriter(logger_);
}

AnimationManager::~AnimationManager() = default;

void AnimationManager::attach(boost::shared_ptr<SceneManager> sceneManager) {
    sceneManager_ = sceneManager;
    clock_->rewind();
    playback_->forgetScene();
}

void AnimationManager::setAnimation(boost::shared_ptr<Animation> animation) {
    clock_->reset();
    targeted_.clear();
    targetedNodes_.clear();
    frameTimes_.clear();
    animation_.swap(animation);
    if (animation_) {
        setUpAnimation(*animation_);
        calculateFrameTimes(*animation_, frameTimes_);
    }
    calculateBaseMatrices();
}

void AnimationManager::setUpAnimation(Animation& animation) {
    const auto duration = animation.getDuration();
    clock_->setLoopDuration(duration);
    const auto scene = sceneManager_.lock();
    AnimationWalk walk(animation, AnimationWalk::PARENTS_FIRST, AnimationWalk::SKIP_REPEATS);
    while (auto* const current = walk.next()) {
        if (current->getTimeRange() == 0) current->setTimeRange(wholeMillisecondsOf(duration));
        if (scene) targetChannels(*current, *scene);
    }
}

void AnimationManager::targetChannels(Animation& animation, SceneManager& scene) {
    if (!animation.targetNodeID_.empty()) {
        const auto node = scene.getNodeByID(animation.targetNodeID_);
        if (node) animation.setTargetNode(node);
    }
    for (const auto& channel : animation.channels_) {
        const auto node = scene.getNodeByID(channel.target.nodeID);
        if (!node) continue;
        const auto [entry, isNew] = targeted_.try_emplace(node);
        if (isNew) targetedNodes_.push_back(node);
        auto& sids = entry->second;
        if (!contains(sids, channel.target.sid)) sids.push_back(channel.target.sid);
    }
}

void AnimationManager::calculateBaseMatrices() {
    AnimationPlayback::BaseMatrices matrices;
    for (const auto& [node, sids] : targeted_) {
        matrices.emplace(node, untargetedProduct(*node, sids));
    }
    playback_->reset(std::move(matrices));
}

bool AnimationManager::update(time_duration elapsed) {
    constexpr double millisecondsPerSecond = 1000.0;
    // Handlers may release whatever they find.
    const auto self = weak_from_this().lock();
    const auto scene = sceneManager_.lock();
    const auto animation = animation_;
    if (!scene || !animation) return false;
    std::int64_t milliseconds = 0;
    if (!clock_->advance(elapsed, milliseconds)) return false;
    const double seconds = static_cast<double>(milliseconds) / millisecondsPerSecond;
    playback_->play(*animation, *scene, static_cast<float>(seconds));
    return true;
}

void AnimationManager::setTime(time_duration time) { clock_->setTime(time); }

void AnimationManager::setTimeTarget(time_duration time) { clock_->setTarget(time); }

void AnimationManager::pause() { clock_->pause(); }

void AnimationManager::resume() { clock_->resume(); }

bool AnimationManager::paused() const { return clock_->paused(); }

void AnimationManager::setSmooth(bool smooth) { clock_->setSmooth(smooth); }

time_duration AnimationManager::getCurrentTime() const { return clock_->currentTime(); }

time_duration AnimationManager::getLoopDuration() const { return clock_->loopDuration(); }

std::vector<std::string> AnimationManager::getTargetedTransformationsForNode(
    boost::shared_ptr<Node> node) const {
    const auto found = targeted_.find(node);
    return found == targeted_.end() ? SidList() : found->second;
}

bool AnimationManager::isNodeTargeted(boost::shared_ptr<Node> node) const {
    return targeted_.count(node) > 0;
}

AnimationManager::InterpolationType AnimationManager::getInterpolationType(
    const std::string& name) const {
    static constexpr const char* names[] = {"step",    "linear",   "bezier",
                                            "hermite", "cardinal", "bspline"};
    for (const auto type : {STEP, LINEAR, BEZIER, HERMITE, CARDINAL, BSPLINE}) {
        if (equalsInLowerCase(name, names[type])) return type;
    }
    return LINEAR;
}

int AnimationManager::indexOfCoordinateValue(const std::string& name) const {
    return coordinateIndex(name);
}

float AnimationManager::interpolateBezier(float a, float b, float ta, float tb, float t,
                                          const Eigen::Vector2f& /*c0*/,
                                          const Eigen::Vector2f& /*c1*/) const {
    const std::array<float, 2> times = {ta, tb};
    return KeyInterval(times.data(), 2, 1, t).between(a, b);  // Without the tangents, on purpose.
}

}  // namespace vantorix::scene
