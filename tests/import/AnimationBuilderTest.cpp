#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/import/ImportOptions.h"
#include "apps/import/ModelBuilder.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "tests/import/SampleDocument.h"
#include "tests/support/RecordedScene.h"

using namespace vantorix::apps::import;
using namespace vantorix::scene;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

using Vector = Eigen::Vector3d;
using Quaternion = Eigen::Quaterniond;

/// Finds a value by searching all keys, in double precision.
template <typename Value, typename Blend>
Value naiveValue(const ModelKeys& keys, double time, const Value& rest,
                 const std::vector<Value>& values, Blend blend) {
    if (values.empty()) return rest;
    if (time <= keys.times.front()) return values.front();
    for (std::size_t i = 1; i < values.size(); ++i) {
        const double start = keys.times[i - 1], end = keys.times[i];
        if (time <= end) {
            return blend(values[i - 1], values[i], (time - start) / (end - start));
        }
    }
    return values.back();
}

std::vector<Vector> vectorsOf(const ModelKeys& keys) {
    std::vector<Vector> values;
    for (std::size_t i = 0; i < keys.times.size(); ++i) {
        values.emplace_back(keys.values[i * 3], keys.values[i * 3 + 1], keys.values[i * 3 + 2]);
    }
    return values;
}

std::vector<Quaternion> quaternionsOf(const ModelKeys& keys) {
    std::vector<Quaternion> values;
    for (std::size_t i = 0; i < keys.times.size(); ++i) {
        const float* const v = &keys.values[i * 4];
        values.emplace_back(v[3], v[0], v[1], v[2]);
    }
    return values;
}

Vector naiveVector(const ModelKeys& keys, double time, const Vector& rest) {
    return naiveValue(
        keys, time, rest, vectorsOf(keys),
        [](const Vector& a, const Vector& b, double f) -> Vector { return a * (1.0 - f) + b * f; });
}

/// What a node is like while nothing plays.
struct Rest {
    Vector translation = Vector::Zero();
    Quaternion rotation = Quaternion::Identity();
    Vector scale = Vector::Ones();
};

Eigen::Matrix4d matrixOf(const Rest& pose) {
    Eigen::Affine3d matrix = Eigen::Affine3d::Identity();
    matrix.translate(pose.translation).rotate(pose.rotation).scale(pose.scale);
    return matrix.matrix();
}

Eigen::Matrix4d naivePose(const ModelChannel& channel, const Rest& rest, double time) {
    const auto slerp = [](const Quaternion& a, const Quaternion& b, double f) {
        return a.slerp(f, b);
    };
    return matrixOf({naiveVector(channel.positions, time, rest.translation),
                     naiveValue(channel.rotations, time, rest.rotation,
                                quaternionsOf(channel.rotations), slerp),
                     naiveVector(channel.scales, time, rest.scale)});
}

/// Plays clips of built documents, one update per time.
struct PlayedModel : ::testing::Test {
    void build() {
        ModelBuilder(document, "sample", scene.manager, result).build(ImportOptions());
        manager->attach(scene.manager);
    }
    boost::shared_ptr<Animation> animation(std::size_t clip) {
        return scene->getAnimationsLibrary().at(clip);
    }
    void show(int milliseconds) {
        manager->setTime(boost::posix_time::milliseconds(milliseconds));
        EXPECT_TRUE(manager->update({}));
    }
    Eigen::Matrix4d localMatrix(const std::string& node) {
        return scene->getNodeByID(node)->getTransformations().cast<double>();
    }
    std::vector<std::string> targets(std::size_t clip) {
        std::vector<std::string> list;
        for (const auto& child : animation(clip)->getChildAnimations()) {
            for (const auto& channel : child->getChannelArray()) list.push_back(channel.second);
        }
        return list;
    }

    vantorix::test::RecordedScene scene;
    ModelDocument document = skinnedDocument();
    ImportResult result;
    boost::shared_ptr<AnimationManager> manager = boost::make_shared<AnimationManager>();
};

/// Random keys at tenths of a second. The library shows the later key in the last hundredth of an
/// interval, so that a test had better not ask for a time just before a tenth.
struct RandomClips {
    explicit RandomClips(unsigned int seed) : random(seed) {}

    float number(float least, float most) {
        return std::uniform_real_distribution<float>(least, most)(random);
    }
    bool chance() { return random() % 2 == 0; }

    ModelKeys keys(std::size_t components, bool isRotation, float least) {
        ModelKeys keys;
        for (int tenth = 0; tenth < 20; ++tenth) {
            if (random() % 3 > 0) continue;
            keys.times.push_back(static_cast<float>(tenth) * 0.1f);
            Eigen::Vector4f value(number(least, 3), number(least, 3), number(least, 3),
                                  number(least, 3));
            if (isRotation) value.normalize();
            keys.values.insert(keys.values.end(), value.data(), value.data() + components);
        }
        return keys;
    }
    Rest rest() {
        Rest pose;
        if (chance()) pose.translation = Vector(number(-3, 3), number(-3, 3), number(-3, 3));
        if (chance()) pose.rotation = Quaternion(number(-1, 1), number(-1, 1), 1, 1).normalized();
        if (chance()) pose.scale = Vector(number(0.5f, 2), number(0.5f, 2), number(0.5f, 2));
        return pose;
    }
    ModelChannel channel(std::uint32_t node) {
        ModelChannel channel;
        channel.node = node;
        if (chance()) channel.positions = keys(3, false, -3);
        if (chance()) channel.rotations = keys(4, true, -3);
        if (chance()) channel.scales = keys(3, false, 0.2f);
        return channel;
    }

    std::mt19937 random;
};

}  // namespace

TEST_F(PlayedModel, PlaybackIsThePoseOfTheFilesKeys) {
    RandomClips random(8);
    std::vector<Rest> rests;
    document.clips = {{"first", 2.0f, {}}, {"second", 2.5f, {}}};
    for (std::uint32_t node = 0; node < 200; ++node) {
        rests.push_back(random.rest());
        document.nodes.emplace_back();
        document.nodes.back().name = "moving " + std::to_string(node);
        Eigen::Map<Eigen::Matrix4f>(document.nodes.back().matrix.data()) =
            matrixOf(rests.back()).cast<float>();
        for (auto& clip : document.clips) {
            clip.channels.push_back(
                random.channel(static_cast<std::uint32_t>(document.nodes.size()) - 1));
        }
    }
    build();
    for (std::size_t clip = 0; clip < 2; ++clip) {
        manager->setAnimation(animation(clip));
        EXPECT_EQ(manager->getLoopDuration().total_milliseconds(), clip == 0 ? 2000 : 2500);
        for (const int time : {0, 1, 150, 700, 1010, 1550, 1999}) {
            show(time);
            for (std::uint32_t node = 0; node < 200; ++node) {
                const auto expected =
                    naivePose(document.clips[clip].channels[node], rests[node], time / 1000.0);
                const Eigen::Matrix4d difference =
                    localMatrix("moving " + std::to_string(node)) - expected;
                ASSERT_LT(difference.cwiseAbs().maxCoeff(), 2e-4) << node << " at " << time;
            }
        }
    }
}

TEST_F(PlayedModel, NodesStandAtRestUntilSomethingPlays) {
    document.clips[0].channels[1].positions.values[1] = 9.0f;
    document.nodes[3].matrix[12] = 4.0f;
    build();
    EXPECT_EQ(localMatrix("hip")(0, 3), 4.0);
    EXPECT_EQ(scene->getNodeByID("hip")->getOriginalTransformations().size(), 1u);
    EXPECT_EQ(localMatrix("square")(0, 3), 5.0);
}

TEST_F(PlayedModel, OneElementPerNodeServesAllClips) {
    // The hip only moves, the knee also turns.
    build();
    EXPECT_THAT(targets(0), ElementsAre("knee/transform", "hip/translate"));
    EXPECT_EQ(animation(0)->getID(), "bend");
    const auto sampler = animation(0)->getChildAnimations()[1]->getChannelArray()[0].first;
    EXPECT_EQ(sampler->getStreamBySemantic(Sampler::OUTPUT)->stride, 3);
    EXPECT_THAT(std::vector<float>(sampler->getStreamBySemantic(Sampler::INPUT)->values),
                ElementsAre(-1.0f, 0.5f, 1.5f, 2.0f));
    EXPECT_THAT(sampler->getStreamBySemantic(Sampler::INTERPOLATION)->stringValues,
                ElementsAre("LINEAR", "LINEAR", "LINEAR", "LINEAR"));
    const auto knee = animation(0)->getChildAnimations()[0]->getChannelArray()[0].first;
    EXPECT_EQ(knee->getStreamBySemantic(Sampler::OUTPUT)->stride, 16);
    EXPECT_EQ(knee->getStreamBySemantic(Sampler::OUTPUT)->values[16 + 7], 1.0f) << "row by row";
}

TEST_F(PlayedModel, AClipThatScalesAlsoMakesItAMatrix) {
    auto second = document.clips[0];
    second.channels.erase(second.channels.begin());
    second.channels[0].scales = {{0.0f}, {2, 2, 2}};
    document.clips.push_back(second);
    build();
    EXPECT_THAT(targets(0), ElementsAre("knee/transform", "hip/transform"));
    EXPECT_THAT(targets(1), ElementsAre("hip/transform"));
    EXPECT_EQ(animation(1)->getID(), "bend_2");
}

TEST_F(PlayedModel, NodesWithADotInTheirNameCanBeTargets) {
    document.nodes[3].name = "hip.001";
    document.nodes[1].name = "square.001";
    build();
    EXPECT_THAT(targets(0), Contains("hip_001/translate"));
    EXPECT_TRUE(scene->getNodeByID("square.001")) << "nothing moves it";
    manager->setAnimation(animation(0));
    show(1000);
    EXPECT_NEAR(localMatrix("hip_001")(1, 3), 1.5, 1e-6);
    EXPECT_THAT(result.report.getNotes(), Contains("node \"hip.001\": its id is \"hip_001\""));
}
