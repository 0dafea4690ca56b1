#include <limits>
#include <random>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/controller/Controller.h"
#include "scene/controller/Morph.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "tests/reliability/FailingAllocation.h"

namespace vantorix::scene {
namespace {

using Joints = std::vector<int>;
using Weights = std::vector<float>;
using Counts = std::vector<unsigned int>;

boost::shared_ptr<Stream> makeStream(const std::string& name, const Weights& values = {}) {
    const auto stream = boost::make_shared<Stream>(name, 1, true);
    stream->values.assign(values.begin(), values.end());
    return stream;
}

/// A skin with the streams "joints" and "weights" as its vertex weights input.
struct Influences : ::testing::Test {
    Skin skin{nullptr};
    Joints joints;
    Weights weights;

    void fill(const Weights& values, Counts counts, Joints v) {
        skin.setStreams({nullptr, makeStream("joints"), makeStream("weights", values)});
        skin.setVertexWeightsInput("JOINT", "joints");
        skin.setVertexWeightsInput("WEIGHT", "weights");
        skin.setVCount(std::move(counts));
        skin.setV(std::move(v));
    }
    void expect(const Joints& expectedJoints, const Weights& expectedWeights) {
        EXPECT_EQ(joints, expectedJoints);
        EXPECT_EQ(weights, expectedWeights);
    }
};

TEST_F(Influences, FollowReplacedLists) {
    fill({0.5f, 1.0f}, {1, 1}, {1, 0, 2, 1});
    skin.setVCount({0, 2});
    skin.getVertexJointsAndWeights(1, joints, weights);
    expect({1, 2}, {0.5f, 1.0f});
    skin.setV({5, 1});
    skin.setVCount({1});
    skin.getVertexJointsAndWeights(0, joints, weights);
    skin.getVertexJointsAndWeights(1, joints, weights);
    expect({1, 2, 5}, {0.5f, 1.0f, 1.0f});
}

TEST_F(Influences, AreNotReadOutsideTheData) {
    fill({0.5f}, {2, 4000000000u, 4000000000u, 1}, {1, 0, 2, -1, 3, 7, 4});
    skin.getVertexJointsAndWeights(0, joints, weights);
    skin.getVertexJointsAndWeights(1, joints, weights);
    skin.getVertexJointsAndWeights(2, joints, weights);
    skin.getVertexJointsAndWeights(3, joints, weights);
    skin.getVertexJointsAndWeights(4000000000u, joints, weights);
    expect({1, 2, 3}, {0.5f, 0.0f, 0.0f});  // Of a lone last entry, nothing is read.
}

TEST_F(Influences, WithoutAWeightStreamHaveNoWeight) {
    skin.setVCount({1});
    skin.setV({6, 0});
    skin.getVertexJointsAndWeights(0, joints, weights);
    expect({6}, {0.0f});
}

TEST_F(Influences, OfANewVertexAreTheMeanOfItsNeighbours) {
    fill({0.25f, 0.75f, 0.5f}, {2, 2}, {0, 0, 1, 1, 1, 2, 2, 2});
    skin.calculateNewJointsAndWeights(0, 1, joints, weights);
    expect({0, 1, 2}, {0.125f, 0.625f, 0.25f});
}

TEST_F(Influences, OfANewVertexTakeTheFirstOfRepeatedJoints) {
    fill({0.25f, 0.75f, 1.0f}, {3, 1}, {4, 0, 4, 1, 2, 1, 4, 1});
    skin.calculateNewJointsAndWeights(0, 1, joints, weights);
    expect({2, 4}, {0.375f / 0.875f, 0.5f / 0.875f});
}

TEST_F(Influences, OfANewVertexAreNormalisedWithWhatTheListHeld) {
    fill({1.0f}, {1}, {3, 0});
    joints = {9};
    weights = {3.0f};
    skin.calculateNewJointsAndWeights(0, 0, joints, weights);
    expect({9, 3}, {0.75f, 0.25f});
}

TEST_F(Influences, OfANewVertexStayFiniteAndUntouchedWhenThereAreNone) {
    fill({0.0f, 1.0f, -1.0f}, {0, 1, 2}, {1, 0, 1, 1, 2, 2});
    weights = {5.0f};
    skin.calculateNewJointsAndWeights(0, 0, joints, weights);
    skin.calculateNewJointsAndWeights(7, 8, joints, weights);
    expect({}, {5.0f});
    weights.clear();
    skin.calculateNewJointsAndWeights(1, 1, joints, weights);
    skin.calculateNewJointsAndWeights(2, 2, joints, weights);
    expect({1, 1, 2}, {0.0f, 1.0f, -1.0f});
}

TEST_F(Influences, OfANewVertexDoNotSpreadANonFiniteWeight) {
    fill({std::numeric_limits<float>::quiet_NaN(), 1.0f}, {2}, {1, 0, 2, 1});
    skin.calculateNewJointsAndWeights(0, 0, joints, weights);
    EXPECT_EQ(joints, Joints({1, 2}));
    EXPECT_EQ(weights[1], 1.0f);
}

/// The pairs of a vertex, found by counting through all vertices before it.
std::vector<std::pair<int, float>> naiveInfluences(const Skin& skin, unsigned int vertex,
                                                   const Weights& values) {
    std::size_t pair = 0;
    for (unsigned int i = 0; i < vertex; ++i) pair += skin.getVCount()[i];
    std::vector<std::pair<int, float>> found;
    for (unsigned int i = 0; i < skin.getVCount()[vertex]; ++i, ++pair) {
        found.emplace_back(skin.getV()[2 * pair],
                           values[static_cast<std::size_t>(skin.getV()[2 * pair + 1])]);
    }
    return found;
}

TEST_F(Influences, EqualThoseFoundByCounting) {
    std::mt19937 random(7);
    const auto below = [&](int end) { return std::uniform_int_distribution<>(0, end - 1)(random); };
    const Weights values = {0.0f, 0.125f, 0.25f, 0.5f, 1.0f};
    Counts counts;
    Joints v;
    for (int vertex = 0; vertex < 200; ++vertex) {
        counts.push_back(static_cast<unsigned int>(below(6)));
        for (unsigned int i = 0; i < counts.back(); ++i) {
            v.push_back(below(9));
            v.push_back(below(5));
        }
    }
    fill(values, counts, v);

    for (unsigned int vertex = 0; vertex < counts.size(); ++vertex) {
        joints.clear();
        weights.clear();
        skin.getVertexJointsAndWeights(vertex, joints, weights);
        const auto expected = naiveInfluences(skin, vertex, values);
        ASSERT_EQ(joints.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(std::make_pair(joints[i], weights[i]), expected[i]);
        }
    }
}

TEST(SkinInputs, AreBoundBySemanticAndStreamName) {
    const auto names = makeStream("names"), binds = makeStream("binds");
    Skin skin(nullptr);
    skin.setStreams({names, binds, makeStream("binds")});
    skin.setJointsInput("JOINT", "names");
    skin.setJointsInput("INV_BIND_MATRIX", "binds");
    skin.setJointsInput("JOINT", "missing");
    skin.setJointsInput("WEIGHT", "binds");
    EXPECT_EQ(skin.getJointsInput("JOINT"), names);
    EXPECT_EQ(skin.getJointsInput("INV_BIND_MATRIX"), binds);
    EXPECT_FALSE(skin.getJointsInput("WEIGHT"));
    EXPECT_FALSE(skin.getVertexWeightsInput("JOINT"));
    EXPECT_FALSE(skin.getVertexWeightsInput("INV_BIND_MATRIX"));
}

TEST(SkinInputs, AWeightStreamIsReplacedWhereItStands) {
    const auto weights = makeStream("weights"), joints = makeStream("joints");
    const auto better = makeStream("better");
    Skin skin(nullptr);
    skin.setStreams({joints, weights});
    skin.setVertexWeightsInput("WEIGHT", "weights");
    skin.replaceVertexWeightsStream("WEIGHT", nullptr);
    skin.replaceVertexWeightsStream("JOINT", better);
    skin.replaceVertexWeightsStream("INV_BIND_MATRIX", better);
    EXPECT_EQ(skin.getStreams()[1], weights);

    skin.replaceVertexWeightsStream("WEIGHT", better);
    EXPECT_EQ(skin.getStreams()[1], better);
    EXPECT_EQ(skin.getVertexWeightsInput("WEIGHT"), better);

    skin.setStreams({joints, nullptr});
    skin.replaceVertexWeightsStream("WEIGHT", weights);
    EXPECT_EQ(skin.getVertexWeightsInput("WEIGHT"), better);
    EXPECT_FALSE(skin.getStreams()[1]);
}

TEST(SkinMemory, CountsThatCannotBeSetLeaveTheOldOnes) {
    Skin skin(nullptr);
    skin.setVCount({1, 1});
    skin.setV({7, 0, 8, 0});
    Counts counts(5000, 2);
    EXPECT_TRUE(test::failAt(1, [&] { skin.setVCount(std::move(counts)); }));

    EXPECT_EQ(skin.getVCount(), Counts({1, 1}));
    Joints joints;
    Weights weights;
    for (unsigned int vertex = 0; vertex < 5000; ++vertex) {
        skin.getVertexJointsAndWeights(vertex, joints, weights);
    }
    EXPECT_EQ(joints, Joints({7, 8}));
}

TEST(Controller, TakesTheSourceOfTheSkinBeforeThatOfTheMorph) {
    const auto skinned = boost::make_shared<Mesh>("skinned", "");
    const auto morphed = boost::make_shared<Mesh>("morphed", "");
    Controller controller("id", "name");
    EXPECT_FALSE(controller.getSourceGeometry());
    controller.setMorph(boost::make_shared<Morph>(morphed));
    EXPECT_EQ(controller.getSourceGeometry(), morphed);
    controller.setSkin(boost::make_shared<Skin>(skinned));
    EXPECT_EQ(controller.getSourceGeometry(), skinned);
    EXPECT_TRUE(controller.getMorph());
    controller.setSkin(nullptr);
    EXPECT_EQ(controller.getSourceGeometry(), morphed);
}

}  // namespace
}  // namespace vantorix::scene
