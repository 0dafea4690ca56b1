#include <limits>
#include <map>
#include <random>

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <gtest/gtest.h>

#include "scene/animation/Animation.h"
#include "scene/transform/TransformationMatrix.h"
#include "scene/transform/TransformationRotate.h"
#include "scene/transform/TransformationScale.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/animation/AnimationSupport.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::scene {
namespace {

using boost::posix_time::microseconds;
using test::Floats;
using test::Keys;
using test::makeAnimation;
using test::Names;

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

TEST(Sampler, FindsTheFirstStreamOfASemantic) {
    Sampler sampler("sampler");
    const auto first = test::makeStream("TIME", 1, {}, 0);
    sampler.addInput("INPUT", first);
    sampler.addInput("INPUT", test::makeStream("TIME", 1, {}, 0));
    sampler.addInput("input", first);
    sampler.addInput("", first);
    sampler.addInput("OUTPUT", nullptr);
    sampler.addInput("OUTPUT", first);
    EXPECT_EQ(sampler.getStreamBySemantic(Sampler::INPUT), first);
    EXPECT_FALSE(sampler.getStreamBySemantic(Sampler::OUTPUT));
    EXPECT_FALSE(sampler.getStreamBySemantic(Sampler::INTERPOLATION));
    using Semantics = std::vector<Sampler::Semantic>;
    EXPECT_EQ(sampler.getInputsSemantics(),
              Semantics({Sampler::INPUT, Sampler::INPUT, Sampler::OUTPUT, Sampler::OUTPUT}));
}

TEST(Animation, LooksUpItsOwnItemsByTheirIdentifiers) {
    const auto animation = makeAnimation();
    const Keys keys({0}, 1, {0});
    const auto child = makeAnimation();
    child->setSamplers({keys.sampler});
    child->setStreams({keys.input});
    animation->addAnimation(child);
    animation->addAnimation(nullptr);
    EXPECT_EQ(animation->getChildAnimations().size(), 1u);
    EXPECT_FALSE(animation->getSamplerById("sampler"));
    EXPECT_FALSE(animation->getStreamById("TIME-stream"));
    EXPECT_EQ(child->getSamplerById("sampler"), keys.sampler);
    EXPECT_EQ(child->getStreamById("TIME-stream"), keys.input);

    const Animation copy(*child);
    EXPECT_EQ(copy.getSamplers(), child->getSamplers());
    EXPECT_EQ(copy.getStreams(), child->getStreams());
}

TEST(MadeChannel, FollowsThePattern) {
    struct Case {
        std::string target, childID, prefix, parameter;
        bool isMatrix;
    };
    const std::vector<Case> cases = {{"other/t.X", "n-node-t", "n-node_t", "X", false},
                                     {"n/t", "n-node-t", "n-node_t", "TRANSFORM", true},
                                     {"n", "n-node-", "n-node_", "", false},
                                     {"n.1/t", "n-node-t", "n-node_t", "1/t", false}};
    for (const auto& made : cases) {
        SCOPED_TRACE(made.target);
        const auto animation = makeAnimation();
        boost::shared_ptr<ITransformation> element = boost::make_shared<TransformationTranslate>();
        if (made.isMatrix) element = boost::make_shared<TransformationMatrix>();
        const auto sampler = animation->getChannel("n", made.target, element);
        ASSERT_EQ(animation->getChildAnimations().size(), 1u);
        const auto child = animation->getChildAnimations()[0];
        EXPECT_EQ(sampler->getId(), "n-sampler");
        EXPECT_EQ(child->getID(), made.childID);
        EXPECT_EQ(child->getName(), "");
        EXPECT_EQ(child->getChannelArray(),
                  std::vector<Animation::Channel>({{sampler, made.target}}));
        EXPECT_EQ(child->getSamplers()[0], sampler);

        const auto streams = child->getStreams();
        ASSERT_EQ(streams.size(), 3u);
        const std::vector<std::pair<std::string, std::string>> parameters = {
            {"TIME", "float"},
            {made.parameter, made.isMatrix ? "float4x4" : "float"},
            {"INTERPOLATION", "Name"}};
        const Names suffixes = {"-input", "-output", "-interpolations"};
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(streams[i]->name, made.prefix + suffixes[i]);
            EXPECT_EQ(streams[i]->params.size(), 1u);
            EXPECT_EQ(streams[i]->params[0], parameters[i]);
            EXPECT_EQ(streams[i]->stride, made.isMatrix && i == 1 ? 16 : 1);
            EXPECT_EQ(streams[i]->count, 0);
        }
        EXPECT_EQ(animation->getChannel("n", made.target, element), sampler);
        EXPECT_NE(animation->getChannel("m", made.target, element), sampler);
        EXPECT_EQ(animation->getChildAnimations().size(), 2u);
    }
}

TEST(MadeChannel, IsFoundAsTheChildrenAreNow) {
    const auto animation = makeAnimation();
    const auto first = animation->getChannel("n", "n/t", nullptr);
    const auto second = animation->getChannel("n", "n/u", nullptr);
    const auto children = animation->getChildAnimations();
    *children[0] = *children[1];
    EXPECT_EQ(animation->getChannel("n", "n/u", nullptr), second);
    const auto third = animation->getChannel("n", "n/t", nullptr);
    EXPECT_TRUE(third != first && third != second);

    const auto plain = makeAnimation();
    animation->addAnimation(plain);
    const Keys keys({0}, 1, {0});
    plain->addChannel(keys.sampler, "anywhere/x");
    EXPECT_EQ(animation->getChannel("", "", nullptr), keys.sampler);
}

TEST(Durations, AreTruncatedToWholeMilliseconds) {
    struct Case {
        const char* name;
        Floats times;
        int count;
        std::size_t parameters;
        long microseconds;
    };
    const std::vector<Case> cases = {{"truncated", {0, 2.0009f}, 2, 1, 2000000},
                                     {"count below values", {1, 2, 3}, 2, 1, 2000000},
                                     {"count above values", {1, 2, 3}, 4, 1, 0},
                                     {"negative count", {1}, -1, 1, 0},
                                     {"no count", {1}, 0, 1, 0},
                                     {"negative time", {-1}, 1, 1, 0},
                                     {"not a number", {notANumber}, 1, 1, 0},
                                     {"infinite", {infinite}, 1, 1, 1000000000000000000},
                                     {"no parameter", {1}, 1, 0, 0},
                                     {"two parameters", {1}, 1, 2, 0}};
    for (const auto& last : cases) {
        const Keys keys(last.times, 1, {});
        keys.input->count = last.count;
        keys.input->params.assign(last.parameters, {"ANY", "float"});
        const auto animation = makeAnimation(), child = makeAnimation();
        animation->addChannel(nullptr, "");
        animation->addChannel(boost::make_shared<Sampler>("empty"), "");
        child->addChannel(keys.sampler, "");
        animation->addAnimation(child);
        EXPECT_EQ(animation->getDuration(), microseconds(last.microseconds)) << last.name;
    }
}

/// Elements of the target node by their initials: Rotate, Translate, Scale, Matrix.
TEST(Validity, AsksTheElementsOfTheTarget) {
    const std::map<std::string, bool> validities = {
        {"", true},   {"R", true},  {"RR", false},  {"T", false},
        {"S", false}, {"TM", true}, {"RRMT", true},
    };
    const test::RecordedScene scene;
    for (const auto& [elements, isValid] : validities) {
        const auto node = scene.makeNode("node");
        for (const char initial : elements) {
            if (initial == 'R') test::addElement<TransformationRotate>(*node, "");
            if (initial == 'T') test::addElement<TransformationTranslate>(*node, "");
            if (initial == 'S') test::addElement<TransformationScale>(*node, "");
            if (initial == 'M') test::addElement<TransformationMatrix>(*node, "");
        }
        Animation animation("", "");
        animation.setTargetNode(node);
        EXPECT_EQ(animation.isValid(), isValid) << elements;
    }
}

TEST(Validity, IsThatOfTheLastChildAndThenThatOfTheTarget) {
    const test::RecordedScene scene;
    const auto bare = scene.makeNode("bare"), scaled = scene.makeNode("scaled");
    const auto placed = scene.makeNode("placed");
    test::addElement<TransformationScale>(*scaled, "");
    test::addElement<TransformationMatrix>(*placed, "");
    const auto animation = makeAnimation(), invalid = makeAnimation();
    animation->addAnimation(invalid);
    const auto isValid = [&](const boost::shared_ptr<Node>& target,
                             const boost::shared_ptr<Node>& childTarget) {
        animation->setTargetNode(target);
        invalid->setTargetNode(childTarget);
        return animation->isValid();
    };
    EXPECT_FALSE(isValid(scaled, placed)) << "a scale alone cannot be driven";
    EXPECT_TRUE(isValid(placed, scaled)) << "a matrix can";
    EXPECT_FALSE(isValid(bare, scaled));
    animation->addAnimation(makeAnimation());
    EXPECT_TRUE(animation->isValid());
    invalid->addAnimation(animation);  // A circle.
    EXPECT_TRUE(animation->isValid());
    *invalid = Animation("", "");
}

TEST(NestedAnimations, LastAsLongAsTheLongestChannel) {
    const Keys longer({1, 5}, 1, {0, 0}), shorter({1, 2}, 1, {0, 0});
    const auto top = makeAnimation(), child = makeAnimation();
    child->addChannel(longer.sampler, "");
    child->addChannel(shorter.sampler, "");
    top->addAnimation(child);
    EXPECT_EQ(top->getDuration(), microseconds(5000000));
    const Keys longest({6}, 1, {0});
    top->addChannel(longest.sampler, "");
    top->addChannel(shorter.sampler, "");
    EXPECT_EQ(top->getDuration(), microseconds(6000000));
}

/// Keys of a matrix channel as whole tuples.
struct KeyModel {
    void insert(float time, const Eigen::Matrix4f& pose) {
        std::size_t key = 0;
        for (std::size_t i = 0; i < times.size(); ++i) {
            if (times[i] < time) key = i + 1;
        }
        const auto place = static_cast<std::ptrdiff_t>(key);
        times.insert(times.begin() + place, time);
        poses.insert(poses.begin() + place, test::rowsOf(pose));
    }

    void remove(float time) {
        for (std::size_t i = times.size(); i > 0; --i) {
            if (!(static_cast<double>(std::abs(time - times[i - 1])) < 0.005)) continue;
            const auto place = static_cast<std::ptrdiff_t>(i - 1);
            times.erase(times.begin() + place);
            poses.erase(poses.begin() + place);
            return;
        }
    }

    Floats flatPoses() const {
        Floats flat;
        for (const auto& pose : poses) flat.insert(flat.end(), pose.begin(), pose.end());
        return flat;
    }

    Floats times;
    std::vector<Floats> poses;
};

TEST(KeyEditing, AgreesWithAListOfKeys) {
    const test::RecordedScene scene;
    const auto node = scene.makeNode("node");
    const auto element = test::addElement<TransformationMatrix>(*node, "m");
    const auto animation = makeAnimation();
    std::mt19937 random(7);
    std::uniform_int_distribution<int> rolled(0, 300);
    KeyModel model;
    for (int step = 0; step < 600; ++step) {
        const float time = static_cast<float>(rolled(random)) * 0.0025f;
        node->addTranslation(1, 2, 3);
        if (rolled(random) < 180) {
            animation->insertTransformations(node, element, time);
            model.insert(time, node->getTransformations());
        } else {
            animation->removeKeyFrame(time);
            model.remove(time);
        }
        const auto streams = animation->getChildAnimations()[0]->getStreams();
        ASSERT_TRUE(streams[0]->values == model.times);
        ASSERT_TRUE(streams[1]->values == model.flatPoses());
        ASSERT_EQ(streams[2]->stringValues, Names(model.times.size(), "LINEAR"));
        for (const auto& stream : streams) {
            ASSERT_EQ(stream->count, static_cast<int>(model.times.size()));
        }
    }
}

TEST(KeyEditing, RecordsMatrixElementsAndMakesOneWhereThereIsNone) {
    const test::RecordedScene scene;
    const auto animation = makeAnimation();
    const auto bare = scene.makeNode("bare");
    animation->insertKeyFrame(bare, 1);
    animation->insertKeyFrame(nullptr, 1);
    ASSERT_EQ(bare->getOriginalTransformations().size(), 1u);
    EXPECT_EQ(bare->getOriginalTransformations()[0]->getSid(), "transform");

    const auto mixed = scene.makeNode("mixed");
    test::addElement<TransformationTranslate>(*mixed, "t");
    animation->insertKeyFrame(mixed, 1);
    test::addElement<TransformationMatrix>(*mixed, "a");
    test::addElement<TransformationMatrix>(*mixed, "b");
    animation->insertKeyFrame(mixed, 1);
    Names children;
    for (const auto& child : animation->getChildAnimations()) children.push_back(child->getID());
    EXPECT_EQ(children, Names({"bare-node-transform", "mixed-node-a", "mixed-node-b"}));
}

TEST(KeyEditing, PutsFlatTangentsBehindTheFirstKey) {
    const test::RecordedScene scene;
    const auto node = scene.makeNode("node");
    const auto animation = makeAnimation();
    const auto element = test::addElement<TransformationMatrix>(*node, "m");
    const auto sampler = animation->getChannel("node", "node/m", element);
    const auto tangents = test::makeStream("TANGENT", 2, {1, 2, 3, 4}, 2);
    sampler->addInput("IN_TANGENT", tangents);
    animation->insertTransformations(node, element, 5);
    EXPECT_TRUE(tangents->values == Floats({1, 2, 0, 0, 3, 4}));
    EXPECT_EQ(tangents->count, 3);
    animation->removeKeyFrame(5);
    EXPECT_TRUE(tangents->values == Floats({0, 0, 3, 4}));
}

// Whatever the stride of the stream says, which then counts sixteen floats as one key of many.
TEST(KeyEditing, WritesSixteenFloatsForEveryKey) {
    const test::RecordedScene scene;
    const auto node = scene.makeNode("node");
    const auto animation = makeAnimation();
    const auto element = test::addElement<TransformationTranslate>(*node, "t");
    for (const float time : {1.0f, 2.0f}) animation->insertTransformations(node, element, time);
    EXPECT_EQ(animation->getChildAnimations()[0]->getStreams()[1]->values.size(), 32u);
}

TEST(KeyEditing, SurvivesStreamsThatContradictThemselves) {
    const test::RecordedScene scene;
    const auto node = scene.makeNode("node");
    const auto animation = makeAnimation();
    const auto element = test::addElement<TransformationMatrix>(*node, "m");
    animation->insertTransformations(node, element, 1);
    const auto streams = animation->getChildAnimations()[0]->getStreams();
    const int extreme = std::numeric_limits<int>::max();
    for (const int stride : {0, -1, 7, extreme}) {
        const auto tangents = test::makeStream("TANGENT", stride, {1}, extreme);
        animation->getChannel("node", "node/m", element)->addInput("OUT_TANGENT", tangents);
        for (const auto& stream : streams) stream->stride = stride;
        streams[1]->values = Floats({1, 2, 3});
        streams[2]->stringValues.clear();
        streams[0]->values = Floats({3, notANumber, 1, -infinite});
        streams[0]->count = extreme;
        for (const float time : {0.0f, 3.0f, notANumber, infinite}) {
            animation->insertTransformations(node, element, time);
            animation->removeKeyFrame(time);
            animation->getDuration();
        }
    }
    streams[0]->params[0].first = "OTHER";
    const auto keys = streams[0]->values.size();
    animation->insertTransformations(node, element, 1);
    animation->insertTransformations(node, nullptr, 1);
    EXPECT_EQ(streams[0]->values.size(), keys);
}

TEST(NestedAnimations, EndWhereTheyContainThemselves) {
    const auto top = makeAnimation();
    const auto child = makeAnimation();
    const Keys keys({1, 1.25f, 1.5f}, 1, {0, 0, 0});
    top->addAnimation(top);
    top->addAnimation(child);
    child->addAnimation(top);
    child->addChannel(keys.sampler, "");
    EXPECT_EQ(top->getDuration(), microseconds(1500000));
    EXPECT_TRUE(top->isValid());
    top->removeKeyFrame(1);
    EXPECT_EQ(keys.input->values.size(), 2u);
    *top = Animation("", "");
    *child = Animation("", "");
}

TEST(NestedAnimations, MayBeDeepAndRepeatThemselves) {
    auto deep = makeAnimation();
    for (int level = 0; level < 200000; ++level) {
        const auto parent = makeAnimation();
        parent->addAnimation(deep);
        deep = parent;
    }
    EXPECT_EQ(deep->getDuration(), microseconds(0));
    EXPECT_TRUE(deep->isValid());
    deep.reset();

    auto twice = makeAnimation();
    for (int level = 0; level < 60; ++level) {
        const auto parent = makeAnimation();
        parent->addAnimation(twice);
        parent->addAnimation(twice);
        twice = parent;
    }
    twice->removeKeyFrame(1);
}

TEST(AnimationLibrary, BelongsToTheScene) {
    const test::RecordedScene scene;
    scene->addAnimation(makeAnimation("a"));
    scene->addAnimation(nullptr);
    scene->addAnimation(makeAnimation("b"));
    scene->removeAnimation(2);
    scene->removeAnimation(0);
    ASSERT_EQ(scene->getAnimationsLibrary().size(), 1u);
    EXPECT_EQ(scene->getAnimationsLibrary()[0]->getID(), "b");
    scene->removeAllAnimations();
    EXPECT_TRUE(scene->getAnimationsLibrary().empty());

    const auto next = scene->generateID();
    scene->setAnimationsLibrary({makeAnimation("OID1"), makeAnimation(next)});
    EXPECT_NE(scene->generateID(), next);
}

}  // namespace
}  // namespace vantorix::scene
