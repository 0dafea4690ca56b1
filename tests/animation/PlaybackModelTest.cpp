#include <algorithm>
#include <limits>
#include <random>

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"
#include "core_api/logger/Logger.h"

#include "scene/animation/AnimationManager.h"
#include "scene/transform/TransformationLookAt.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/animation/AnimationSupport.h"
#include "tests/animation/NaivePlayback.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::scene {
namespace {

using boost::posix_time::milliseconds;
using boost::posix_time::time_duration;
using core::utils::Vector;
using test::Keys;

/// An element of a class that this library does not know, whose SID changes behind its back.
struct ForeignElement : TransformationTranslate {
    std::string getSid() const override { return *sid; }
    boost::shared_ptr<std::string> sid = boost::make_shared<std::string>("a");
};

/// Rolls everything that a test of random edits needs.
class Dice {
public:
    explicit Dice(unsigned int seed) : random_(seed) {}

    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    bool oneIn(int count) { return below(count) == 0; }
    float within(float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random_);
    }
    template <class Item>
    const Item& pick(const std::vector<Item>& items) {
        return items[static_cast<std::size_t>(below(static_cast<int>(items.size())))];
    }
    Eigen::Vector3f vector(float low, float high) {
        return {within(low, high), within(low, high), within(low, high)};
    }
    Vector<float, 3> components(float low, float high) {
        return Vector<float, 3>(vector(low, high).data());
    }
    /// Translation, rotation and a scale of positive factors.
    Eigen::Matrix4f matrix() {
        const Eigen::Vector3f axis = vector(0.2f, 1).normalized();
        return (Eigen::Translation3f(vector(-5, 5)) * Eigen::AngleAxisf(within(-1.4f, 1.4f), axis) *
                Eigen::Scaling(vector(0.5f, 2)))
            .matrix();
    }

private:
    std::mt19937 random_;
};

/// A scene and an animation under random edits, played by the manager and by the model.
class EditedPlayback {
public:
    EditedPlayback(unsigned int seed, bool isHeard) : dice_(seed), model_(*scene_.manager) {
        if (!isHeard) scene_->setEventManager(boost::make_shared<core::event::EventManager>());
        listener_.registerHandler(std::string("SceneUpdate"), [this](core::event::Event) {
            if (isPlaying_ && !keepsReference_ && dice_.oneIn(8)) editStream();
        });
        for (int i = 0; i < 7; ++i) addNode();
        for (int i = 0; i < 12; ++i) addChannel();
        manager_->attach(scene_.manager);
        other_->attach(scene_.manager);
        setAnimation();
    }

    void edit() {
        using Edit = void (EditedPlayback::*)();
        static const std::vector<Edit> edits = {
            &EditedPlayback::addNode,       &EditedPlayback::renameNode,
            &EditedPlayback::moveNode,      &EditedPlayback::removeNode,
            &EditedPlayback::addElement,    &EditedPlayback::shuffleElements,
            &EditedPlayback::renameElement, &EditedPlayback::turnElement,
            &EditedPlayback::addChannel,    &EditedPlayback::addChild,
            &EditedPlayback::editStream,    &EditedPlayback::editStream,
            &EditedPlayback::editStream,    &EditedPlayback::editStream,
            &EditedPlayback::editStream,    &EditedPlayback::editStream,
            &EditedPlayback::editStream,    &EditedPlayback::editStream,
            &EditedPlayback::editStream,    &EditedPlayback::replaceSampler,
            &EditedPlayback::setAnimation,  &EditedPlayback::addForeignNode};
        (this->*dice_.pick(edits))();
    }

    /// Both play at a random time; every node has to be where the model puts it, and one that no
    /// channel names where it was. Another manager may have seen the edits first.
    ::testing::AssertionResult agree() {
        if (dice_.oneIn(2)) play(*other_, dice_.below(1000));
        const int time = dice_.below(1000);
        auto expected = model_.localMatrices(static_cast<float>(time / 1000.0));
        for (const auto& node : nodes_) expected.emplace(node, node->getTransformations());
        if (!play(*manager_, time)) return ::testing::AssertionFailure() << "no update";
        for (const auto& [node, matrix] : expected) {
            if (test::isNear(matrix, node->getTransformations())) continue;
            return ::testing::AssertionFailure() << node->getID() << " at " << time << "\n"
                                                 << node->getTransformations() << "\ninstead of\n"
                                                 << matrix;
        }
        return ::testing::AssertionSuccess();
    }

private:
    bool play(AnimationManager& manager, int time) {
        isPlaying_ = true;
        manager.setTime(milliseconds(time));
        const bool hasPlayed = manager.update(milliseconds(0));
        isPlaying_ = false;
        return hasPlayed;
    }

    std::string randomID() {
        return dice_.pick<std::string>({"n0", "n1", "n2", "n3", "n4", "a long node ID.001"});
    }
    std::string randomSid() { return dice_.pick<std::string>({"a", "b", "c", "transform"}); }
    std::string randomTarget() {
        const auto component = dice_.pick<std::string>({"", "", ".X", ".y", ".Z", ".Angle", ".w"});
        return randomID() + "/" + randomSid() + component;
    }

    void addNode() { attach(scene_.makeNode(randomID())); }

    void attach(const boost::shared_ptr<Node>& node) {
        (nodes_.empty() || dice_.oneIn(3) ? scene_->getRoot() : dice_.pick(nodes_))->addNode(node);
        nodes_.push_back(node);
        addElementTo(*node);
        addElementTo(*node);
    }

    void addForeignNode() {
        if (!dice_.oneIn(8)) return;
        const auto node = boost::make_shared<Node>(foreign_.manager);
        node->setID(randomID());
        attach(node);
    }

    void renameNode() { dice_.pick(nodes_)->setID(randomID()); }

    void moveNode() {
        const auto node = dice_.pick(nodes_);
        scene_->removeNode(node);
        dice_.pick(nodes_)->addNode(node);  // Refused where it would close a circle.
    }

    void removeNode() { scene_->removeNode(dice_.pick(nodes_)); }

    void addElement() { addElementTo(*dice_.pick(nodes_)); }

    void addElementTo(Node& node) {
        const auto sid = randomSid();
        const int kind = dice_.below(dice_.oneIn(4) ? 6 : 4);
        if (kind == 0) {
            test::addElement<TransformationTranslate>(node, sid, dice_.components(-3, 3));
        }
        if (kind == 1) {
            test::addElement<TransformationRotate>(node, sid, dice_.components(0.1f, 1),
                                                   dice_.within(-90, 90));
        }
        if (kind == 2) test::addElement<TransformationScale>(node, sid, dice_.components(0.5f, 2));
        if (kind == 3) test::addElement<TransformationMatrix>(node, sid, dice_.matrix().data());
        if (kind == 4) foreignSids_.push_back(test::addElement<ForeignElement>(node, sid)->sid);
        if (kind == 5) {
            const auto vector = dice_.components(0, 1);
            test::addElement<TransformationLookAt>(node, sid, vector, vector, vector);
        }
    }

    void shuffleElements() {
        const auto node = dice_.pick(nodes_);
        auto elements = node->getOriginalTransformations();
        std::reverse(elements.begin(), elements.end());
        if (!elements.empty() && dice_.oneIn(2)) elements.pop_back();
        node->setOriginalTransformations(elements);
    }

    void renameElement() {
        if (!foreignSids_.empty() && dice_.oneIn(2)) *dice_.pick(foreignSids_) = randomSid();
        const auto elements = dice_.pick(nodes_)->getOriginalTransformations();
        if (!elements.empty()) dice_.pick(elements)->setSid(randomSid());
    }

    void turnElement() {
        for (const auto& element : dice_.pick(nodes_)->getOriginalTransformations()) {
            auto* const rotate = dynamic_cast<TransformationRotate*>(element.get());
            if (rotate) rotate->getRotationAxis() = dice_.components(0.1f, 1);
        }
    }

    Keys makeKeys(int stride) {
        const int count = 2 + dice_.below(40);
        test::Floats times, values;
        for (int key = 0; key < count; ++key) {
            times.push_back(static_cast<float>(key) / static_cast<float>(count) - 0.05f);
            const auto floats = test::rowsOf(dice_.matrix());
            for (int i = 0; i < stride; ++i) {
                values.push_back(stride == 16 ? floats[static_cast<std::size_t>(i)]
                                              : dice_.within(0.3f, 3));
            }
        }
        Keys keys(times, stride, values);
        if (dice_.oneIn(3)) keys.names->stringValues[0] = "StEp";
        if (dice_.oneIn(12)) keys.input->params.resize(2, keys.input->params[0]);
        if (!keys_.empty() && dice_.oneIn(4)) shareStreams(keys, dice_.pick(keys_));
        return keys;
    }

    void shareStreams(Keys& keys, const Keys& owner) {
        keys.input = owner.input;
        if (dice_.oneIn(2)) keys.output = owner.output;
        if (dice_.oneIn(2)) keys.names = owner.names;
        keys.sampler = boost::make_shared<Sampler>("sharing");
        keys.sampler->addInput("INPUT", keys.input);
        keys.sampler->addInput("OUTPUT", keys.output);
        keys.sampler->addInput("INTERPOLATION", keys.names);
    }

    /// Mostly one that can be played.
    void addChannel() {
        auto target = randomTarget();
        int stride = dice_.pick<int>({1, 3, 4, 16});
        const auto node = dice_.pick(nodes_);
        const auto elements = node->getOriginalTransformations();
        if (!elements.empty() && !dice_.oneIn(5)) {
            const auto& element = *dice_.pick(elements);
            const auto component = dice_.pick<std::string>({"", "", ".x"});
            const auto type = element.getType();
            target = node->getID() + "/" + element.getSid() + component;
            stride = component.empty() ? type == ITransformation::ROTATE ? 4 : 3 : 1;
            if (type == ITransformation::MATRIX) stride = 16;
        }
        keys_.push_back(makeKeys(stride));
        const auto animation = dice_.pick(animations_);
        animation->addChannel(dice_.oneIn(20) ? nullptr : keys_.back().sampler, target);
    }

    /// Now and then one that is there already, and never one that contains itself.
    void addChild() {
        const auto parent = dice_.below(static_cast<int>(animations_.size()));
        if (animations_.size() > 6) return;
        animations_.push_back(test::makeAnimation());
        animations_[static_cast<std::size_t>(parent)]->addAnimation(animations_.back());
        if (dice_.oneIn(3)) animations_.front()->addAnimation(animations_.back());
        addChannel();
    }

    void editStream() {
        const auto keys = dice_.pick(keys_);
        const auto others = dice_.pick(keys_);
        switch (dice_.below(5)) {
            case 0:
                return editList(keys.input->values, others.input->values, [this] {
                    return dice_.oneIn(20) ? std::numeric_limits<float>::quiet_NaN()
                                           : dice_.within(0, 1);
                });
            case 1:
                if (keys.output->stride == 16) return editMatrix(keys.output->values);
                if (others.output->stride == 16) return;
                return editList(keys.output->values, others.output->values,
                                [this] { return dice_.within(0.3f, 3); });
            case 2:
                return editList(keys.names->stringValues, others.names->stringValues, [this] {
                    return dice_.pick<std::string>({"STEP", "LINEAR", "Bezier", "step", "?"});
                });
            case 3:
                return editList(keys.input->params, others.input->params, [this] {
                    return std::make_pair(std::string(dice_.oneIn(4) ? "OTHER" : "TIME"),
                                          std::string("float"));
                });
            default:
                if (dice_.oneIn(2)) keys.output->stride = dice_.pick<int>({-1, 0, 1, 3, 4});
        }
    }

    /// Another first key: the model blends nothing but rotations.
    void editMatrix(FloatArray& values) {
        if (values.size() < 16) return;
        test::Floats copy = values;
        const auto rows = test::rowsOf(dice_.matrix());
        if (dice_.oneIn(4)) {
            std::copy(rows.begin(), rows.end(), values.begin());
        } else {
            std::copy(rows.begin(), rows.end(), copy.begin());
            values = copy;
        }
    }

    /// In one of the ways that there are, with items that @p make makes.
    template <class List, class Make>
    void editList(List& list, List& other, const Make& make) {
        std::vector<typename List::value_type> copy = list;
        const auto place = dice_.below(static_cast<int>(copy.size()) + 1);
        const bool isAtEnd = place == static_cast<int>(copy.size());
        switch (dice_.below(11)) {
            case 0:
                return list.push_back(make());
            case 1:
                return list.resize(static_cast<std::size_t>(place));
            case 2:
                return static_cast<void>(list.insert(list.cbegin() + place, make()));
            case 3:
                if (!isAtEnd) list.erase(list.cbegin() + place);
                return;
            case 4:
                return list.swap(other);
            case 5:
                return list.swap(copy);
            case 6:
                list = other;  // Until one of them changes.
                return;
            case 7:
                return isAtEnd ? list.assign(5, make()) : writeLater(list.begin()[place], make());
            case 8:
                list = List(list);
                return;
            default:
                for (auto& item : copy) item = make();
                list = copy;
        }
    }

    template <class Item>
    void writeLater(Item& item, Item value) {
        if (!isPlaying_) {
            keepsReference_ = true;
            play(dice_.oneIn(2) ? *manager_ : *other_, dice_.below(1000));
            keepsReference_ = false;
        }
        item = value;
    }

    void replaceSampler() { *dice_.pick(keys_).sampler = *dice_.pick(keys_).sampler; }

    void setAnimation() {
        // A key far behind the others keeps the loop longer than any time that is played.
        const Keys last({0, 100}, 3, {0, 0, 0, 0, 0, 0});
        animations_.front()->addChannel(last.sampler, "nowhere/a");
        manager_->setAnimation(animations_.front());
        other_->setAnimation(animations_.front());
        model_.setAnimation(animations_.front());
    }

    Dice dice_;
    test::RecordedScene scene_;
    test::RecordedScene foreign_;
    std::vector<boost::shared_ptr<Node>> nodes_;
    std::vector<boost::shared_ptr<std::string>> foreignSids_;
    std::vector<boost::shared_ptr<Animation>> animations_{test::makeAnimation()};
    std::vector<Keys> keys_;
    boost::shared_ptr<AnimationManager> manager_ = boost::make_shared<AnimationManager>();
    boost::shared_ptr<AnimationManager> other_ = boost::make_shared<AnimationManager>();
    test::NaivePlayback model_;
    bool isPlaying_ = false;
    bool keepsReference_ = false;                     // An edit might end it.
    core::event::EventBase listener_{scene_.events};  // Edits streams during an update.
};

struct PlaybackModel : ::testing::TestWithParam<unsigned int> {
    PlaybackModel() { core::logger::Logger::active = false; }
    ~PlaybackModel() override { core::logger::Logger::active = true; }
};

TEST_P(PlaybackModel, AgreesAfterEveryEdit) {
    EditedPlayback playback(GetParam(), GetParam() % 2 == 0);
    ASSERT_TRUE(playback.agree());
    for (int step = 0; step < 150; ++step) {
        playback.edit();
        ASSERT_TRUE(playback.agree()) << "step " << step;
        for (int again = 0; again < 3; ++again) {
            ASSERT_TRUE(playback.agree()) << "again after step " << step;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PlaybackModel, ::testing::Range(0u, 100u));

}  // namespace
}  // namespace vantorix::scene
