// Fuzzes animations, key editing, playback and the cameras of an animation: the input is a list of
// calls, and time is one of their arguments.

#include <algorithm>
#include <vector>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"
#include "core_api/logger/Logger.h"

#include "fuzz/CallReader.h"
#include "fuzz/Fuzzer.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/CameraInstance.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/transform/TransformationLookAt.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"

namespace vantorix::fuzz {
namespace {

using namespace scene;
using boost::posix_time::time_duration;
using StreamPointer = boost::shared_ptr<Stream>;
using Vector3 = core::utils::Vector<float, 3>;

/// A scene with a few nodes, animations whose channels lead to them, and a manager that plays.
class AnimationFuzzer {
public:
    explicit AnimationFuzzer(CallReader reader) : reader_(reader) {
        scene_ = boost::make_shared<SceneManager>(nullptr);
        manager_ = boost::make_shared<AnimationManager>();
        manager_->attach(scene_);
        for (auto& node : nodes_) {
            node = boost::make_shared<Node>(scene_);
            scene_->getRoot()->addNode(node);
        }
        for (auto& animation : animations_) {
            animation = boost::make_shared<Animation>("animation", "");
            known_.push_back(animation);
        }
        nodes_[0]->setID("a");
        nodes_[1]->setID("b");
    }

    /// Empties all animations: one that contains itself, which is no fault of the library's, would
    /// stay in memory.
    ~AnimationFuzzer() {
        for (const auto& animation : known_) *animation = Animation("", "");
    }
    AnimationFuzzer(const AnimationFuzzer&) = delete;
    AnimationFuzzer& operator=(const AnimationFuzzer&) = delete;

    void run() {
        while (!reader_.isAtEnd()) step();
        checkManager();
    }

private:
    using Call = void (AnimationFuzzer::*)();

    void step() {
        static constexpr std::array<Call, 19> calls{
            &AnimationFuzzer::addChannel,    &AnimationFuzzer::addChannel,
            &AnimationFuzzer::addSoundKeys,  &AnimationFuzzer::spoilStream,
            &AnimationFuzzer::addElement,    &AnimationFuzzer::addElement,
            &AnimationFuzzer::addChild,      &AnimationFuzzer::replaceAnimation,
            &AnimationFuzzer::setAnimation,  &AnimationFuzzer::setAnimation,
            &AnimationFuzzer::update,        &AnimationFuzzer::update,
            &AnimationFuzzer::control,       &AnimationFuzzer::editKeys,
            &AnimationFuzzer::editOwnKeys,   &AnimationFuzzer::ask,
            &AnimationFuzzer::changeCameras, &AnimationFuzzer::renameNode,
            &AnimationFuzzer::replaceManager};
        (this->*reader_.of(calls))();
    }

    boost::shared_ptr<Animation>& animation() { return reader_.of(animations_); }

    /// What the playback may be told as time: also Boost's special values.
    time_duration duration() {
        using namespace boost::posix_time;
        static const std::array<time_duration, 6> limits{time_duration(not_a_date_time),
                                                         time_duration(pos_infin),
                                                         time_duration(neg_infin),
                                                         hours(1 << 20),
                                                         microseconds(1),
                                                         microseconds(-1)};
        if (reader_.oneIn(4)) return reader_.of(limits);
        return milliseconds((static_cast<int>(reader_.below(256)) - 32) * 50);
    }

    float keyTime() {
        return reader_.oneIn(8) ? reader_.real() : static_cast<float>(reader_.below(64)) / 8.0f;
    }

    std::string target() {
        static constexpr std::array<const char*, 10> ends{
            "/e", "/e.X", "/e.y", "/e.ANGLE", "/m", "/m.w", "/r.angle", "/r", "/t.Z", "/s"};
        const auto node = reader_.name();
        return reader_.oneIn(16) ? reader_.text() : node + reader_.of(ends);
    }

    StreamPointer makeStream(const char* parameter) {
        const auto made = boost::make_shared<Stream>(reader_.name(), reader_.integer(), true);
        if (!reader_.oneIn(8)) made->params.emplace_back(parameter, "float");
        for (unsigned int i = reader_.below(33); i > 0; --i) made->values.push_back(reader_.real());
        made->count = reader_.integer();
        for (unsigned int i = reader_.below(4); i > 0; --i) {
            made->stringValues.push_back(interpolation());
        }
        return made;
    }

    std::string interpolation() {
        static constexpr std::array<const char*, 7> names{"LINEAR",  "STEP",    "BEZIER", "step",
                                                          "HERMITE", "BSPLINE", ""};
        return reader_.of(names);
    }

    void addChannel() {
        const auto sampler = boost::make_shared<Sampler>(reader_.name());
        for (const char* role :
             {"INPUT", "OUTPUT", "INTERPOLATION", "IN_TANGENT", "OUT_TANGENT", "none"}) {
            if (reader_.oneIn(4)) continue;
            streams_.push_back(makeStream(role[0] == 'I' ? "TIME" : "VALUE"));
            sampler->addInput(role, reader_.oneIn(16) ? nullptr : streams_.back());
        }
        animation()->addChannel(reader_.oneIn(32) ? nullptr : sampler, target());
    }

    /// Streams that agree, as importers make them.
    void addSoundKeys() {
        const int stride = reader_.flag() ? 16 : static_cast<int>(1 + reader_.below(4));
        const int keys = static_cast<int>(reader_.below(4));
        const auto sampler = boost::make_shared<Sampler>("sound");
        for (const auto& [role, size] :
             {std::pair("INPUT", 1), std::pair("OUTPUT", stride), std::pair("INTERPOLATION", 1)}) {
            const auto stream = boost::make_shared<Stream>(role, size, true);
            stream->params.emplace_back(size == 1 ? "TIME" : "VALUE", "float");
            for (int i = 0; i < keys * size; ++i) {
                stream->values.push_back(size == 1 ? static_cast<float>(i) : reader_.real());
            }
            stream->count = keys;
            for (int i = 0; i < keys; ++i) stream->stringValues.push_back(interpolation());
            sampler->addInput(role, stream);
            streams_.push_back(stream);
        }
        animation()->addChannel(sampler, target());
    }

    void spoilStream() {
        if (streams_.empty()) return;
        auto& stream = *streams_[reader_.below(256) % streams_.size()];
        switch (reader_.below(4)) {
            case 0:
                stream.stride = reader_.integer();
                return;
            case 1:
                stream.count = reader_.integer();
                return;
            case 2:
                return stream.values.resize(reader_.below(64));
            default:
                stream.stringValues.resize(reader_.below(4));
        }
    }

    void addElement() {
        const unsigned int kind = reader_.below(5);
        const float x = reader_.real(), y = reader_.real(), z = reader_.real();
        static const std::array<std::pair<boost::shared_ptr<ITransformation>, const char*>, 5> made{
            std::pair(boost::make_shared<TransformationTranslate>(Vector3(1, 2, 3)), "t"),
            std::pair(boost::make_shared<TransformationScale>(Vector3(1, 2, 3)), "s"),
            std::pair(boost::make_shared<TransformationRotate>(Vector3(0, 0, 1), 30.0f), "r"),
            std::pair(boost::make_shared<TransformationMatrix>(), "m"),
            std::pair(boost::make_shared<TransformationLookAt>(Vector3(1, 2, 3), Vector3(),
                                                               Vector3(0, 1, 0)),
                      "e")};
        const auto element = made[kind].first->clone();
        element->setSid(reader_.flag() ? "e" : made[kind].second);
        if (const auto turned = boost::dynamic_pointer_cast<TransformationRotate>(element)) {
            turned->setRotationAxis(x, y, z);
        }
        auto& node = *reader_.of(nodes_);
        if (reader_.oneIn(8)) return node.setOriginalTransformations({element, nullptr});
        node.addTransformation(element);
    }

    void addChild() {
        constexpr unsigned int mostChildren = 10;  // Repetitions multiply.
        auto& parent = *animation();
        if (++children_ <= mostChildren) parent.addAnimation(animation());
    }

    void replaceAnimation() {
        auto& slot = animation();
        const auto former = slot;
        slot = reader_.flag() ? boost::make_shared<Animation>(reader_.name(), "")
                              : boost::make_shared<Animation>(*former);
        known_.push_back(slot);
        slot->setTimeRange(reader_.integer());
        if (reader_.flag()) slot->setTargetNode(reader_.of(nodes_));
        if (reader_.flag()) slot->setSamplers({nullptr, boost::make_shared<Sampler>("a")});
    }

    void setAnimation() { manager_->setAnimation(reader_.oneIn(16) ? nullptr : animation()); }

    void update() {
        for (unsigned int i = reader_.below(4); i > 0; --i) manager_->update(duration());
    }

    void control() {
        switch (reader_.below(6)) {
            case 0:
                return manager_->setTime(duration());
            case 1:
                return manager_->setTimeTarget(duration());
            case 2:
                return manager_->pause();
            case 3:
                return manager_->setSmooth(reader_.flag());
            default:
                manager_->resume();
        }
    }

    void editKeys() {
        constexpr unsigned int mostEdits = 64;
        const float time = keyTime();
        if (++edits_ > mostEdits) return;
        if (reader_.flag()) return manager_->insertKeyframe(time);
        manager_->removeKeyFrame(reader_.oneIn(16) ? nullptr : animation(), time);
    }

    void editOwnKeys() {
        auto& edited = *animation();
        const float time = keyTime();
        switch (reader_.below(4)) {
            case 0:
                return edited.removeKeyFrame(time);
            case 1:
                edited.getChannel(reader_.name(), target(),
                                  boost::make_shared<TransformationMatrix>());
                return;
            case 2:
                return edited.insertTransformations(
                    reader_.of(nodes_), boost::make_shared<TransformationRotate>(), time);
            default:
                edited.insertKeyFrame(reader_.oneIn(16) ? nullptr : reader_.of(nodes_), time);
        }
    }

    void ask() {
        const auto& asked = *animation();
        asked.getDuration();
        asked.isValid();
        asked.getStreamById(reader_.name());
        manager_->getTargetedTransformationsForNode(reader_.of(nodes_));
        manager_->getFrameTimes().push_back(reader_.real());
        checkManager();
    }

    void changeCameras() {
        constexpr unsigned int mostCameras = 4;
        if (++cameras_ > mostCameras) return;
        const auto made =
            reader_.flag() ? manager_->getDefaultCamera() : manager_->addAnimationCamera();
        if (made && reader_.oneIn(4)) scene_->removeNode(made->getParentNode());
    }

    void renameNode() {
        auto& node = *reader_.of(nodes_);
        node.setID(reader_.name());
        if (reader_.oneIn(4)) scene_->removeNode(reader_.of(nodes_));
    }

    void replaceManager() {
        if (reader_.oneIn(4)) {
            scene_.reset();
            scene_ = boost::make_shared<SceneManager>(nullptr);
        }
        if (reader_.flag()) manager_ = boost::make_shared<AnimationManager>();
        manager_->attach(reader_.oneIn(4) ? nullptr : scene_);
    }

    void checkManager() {
        const auto loop = manager_->getLoopDuration();
        const auto now = manager_->getCurrentTime();
        require(!loop.is_special() && !now.is_special(), "times are numbers");
        for (const auto& [node, sids] : manager_->getTargetedTransformationsMap()) {
            require(node && manager_->isNodeTargeted(node), "targeted nodes are targeted");
            require(manager_->getTargetedTransformationsForNode(node) == sids,
                    "both look-ups of what is targeted agree");
        }
        const bool animates = manager_->getAnimation() != nullptr;
        require(animates || manager_->getTargetedTransformationsMap().empty(),
                "without animation nothing is targeted");
    }

    CallReader reader_;
    boost::shared_ptr<SceneManager> scene_;
    boost::shared_ptr<AnimationManager> manager_;
    std::array<boost::shared_ptr<Node>, 4> nodes_;
    std::array<boost::shared_ptr<Animation>, 4> animations_;
    std::vector<boost::shared_ptr<Animation>> known_;
    std::vector<StreamPointer> streams_;
    unsigned int children_ = 0, edits_ = 0, cameras_ = 0;
};

}  // namespace
}  // namespace vantorix::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    vantorix::core::logger::Logger::active = false;
    vantorix::fuzz::AnimationFuzzer(vantorix::fuzz::CallReader(bytes, size)).run();
    return 0;
}
