// What playing remembers of streams, against every way in which their lists can be edited.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <gtest/gtest.h>

#include "core_api/event/EventManager.h"

#include "scene/animation/AnimationManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/transform/TransformationTranslate.h"
#include "tests/animation/AnimationSupport.h"
#include "tests/animation/NaivePlayback.h"
#include "tests/support/RecordedScene.h"

namespace vantorix::scene {
namespace {

using boost::posix_time::milliseconds;
using test::Keys;

constexpr int keyCount = 40;  // In one second.

/// Nodes whose channels have equal lists of key times, many enough that playing keeps values of its
/// own for them, played by two managers in turn.
class EqualChannels {
public:
    EqualChannels() {
        scene_->setEventManager(boost::make_shared<core::event::EventManager>());
        const auto animation = test::makeAnimation();
        for (int i = 0; i < 20; ++i) {
            const auto id = "node" + std::to_string(i);
            const auto node = scene_.makeNode(id);
            scene_->getRoot()->addNode(node);
            test::addElement<TransformationTranslate>(*node, "move");
            keys_.push_back(makeKeys(static_cast<float>(nodes_.size())));
            animation->addChannel(keys_.back().sampler, id + "/move");
            nodes_.push_back(node);
        }
        // A key far behind the others keeps the loop longer than any time that is played.
        animation->addChannel(Keys({0, 100}, 3, {0, 0, 0, 0, 0, 0}).sampler, "nowhere/move");
        model_.setAnimation(animation);
        for (const auto& manager : managers_) {
            manager->attach(scene_.manager);
            manager->setAnimation(animation);
        }
    }

    Stream& input() { return *keys_[0].input; }
    Stream& output() { return *keys_[0].output; }
    boost::shared_ptr<Stream> outputPointer() { return keys_[0].output; }
    Stream& names() { return *keys_[0].names; }
    Stream& otherInput() { return *keys_[1].input; }

    void play() { play(*managers_[0], 450); }

    void expectRight() {
        for (int time = 50; time < 1300; time += 40) {
            for (const auto& manager : managers_) {
                play(*manager, time);
                auto expected = model_.localMatrices(static_cast<float>(time / 1000.0));
                for (const auto& node : nodes_) {
                    EXPECT_TRUE(test::isNear(node->getTransformations(), expected.at(node)))
                        << node->getID() << " at " << time << "\n"
                        << node->getTransformations() << "\ninstead of\n"
                        << expected.at(node);
                }
            }
        }
    }

private:
    static Keys makeKeys(float offset) {
        test::Floats times, values;
        for (int key = 0; key < keyCount; ++key) {
            times.push_back(static_cast<float>(key) / keyCount);
            for (int i = 0; i < 3; ++i) values.push_back(offset + static_cast<float>(key * key));
        }
        return Keys(times, 3, values);
    }

    static void play(AnimationManager& manager, int time) {
        manager.setTime(milliseconds(time));
        manager.update(milliseconds(0));
    }

    test::RecordedScene scene_;
    std::vector<boost::shared_ptr<Node>> nodes_;
    std::vector<Keys> keys_;
    test::NaivePlayback model_{*scene_.manager};
    std::vector<boost::shared_ptr<AnimationManager>> managers_{
        boost::make_shared<AnimationManager>(), boost::make_shared<AnimationManager>()};
};

/// Every way to edit @p list by @p item, which matters in its middle. Each can be gone twice.
template <class List>
std::vector<std::function<void()>> editsOf(List& list, const typename List::value_type& item) {
    using Plain = std::vector<typename List::value_type>;
    const auto changed = [&list, item] {
        Plain copy = list;
        copy.insert(copy.begin() + copy.size() / 2, item);
        copy.erase(copy.begin());
        return copy;
    };
    return {
        [&list, item] { list.push_back(item); },
        [&list, item] { list.emplace_back(item); },
        [&list] { list.pop_back(); },
        [&list, item] { list.insert(list.cbegin() + list.size() / 2, item); },
        [&list] { list.erase(list.cbegin()); },
        [&list] { list.resize(list.size() - 1); },
        [&list, item] { list.assign(3, item); },
        [&list, changed] { list = changed(); },
        [&list, changed] { list = List(changed()); },
        [&list, changed] {
            List other(changed());
            list.swap(other);
        },
        [&list, changed] {
            auto other = changed();
            list.swap(other);
        },
        [&list] { List(std::move(list)).clear(); },
        [&list] { list.clear(); },
        [&list, item] { list[list.size() / 2] = item; },
    };
}

struct PlaybackEdits : testing::Test {
    /// Goes each way of editing what @p listOf gives, twice, in an animation of its own.
    template <class ListOf, class Item>
    static void goEachWay(const ListOf& listOf, const Item& item) {
        EqualChannels counted;
        const auto ways = editsOf(listOf(counted), item).size();
        for (std::size_t way = 0; way < ways; ++way) {
            SCOPED_TRACE("way " + std::to_string(way));
            EqualChannels channels;
            const auto edits = editsOf(listOf(channels), item);
            channels.expectRight();
            edits[way]();
            channels.expectRight();
            if (listOf(channels).empty()) continue;
            edits[way]();
            channels.expectRight();
        }
    }
};

TEST_F(PlaybackEdits, OfKeyTimes) {
    goEachWay(
        [](EqualChannels & channels) -> auto& { return channels.input().values; }, 0.42f);
    goEachWay(
        [](EqualChannels & channels) -> auto& { return channels.otherInput().values; }, 0.42f);
}

TEST_F(PlaybackEdits, OfValues) {
    goEachWay(
        [](EqualChannels & channels) -> auto& { return channels.output().values; }, 1000.0f);
}

TEST_F(PlaybackEdits, OfNames) {
    const std::string item = "STEP";
    goEachWay(
        [](EqualChannels & channels) -> auto& { return channels.names().stringValues; }, item);
}

TEST_F(PlaybackEdits, OfParameters) {
    const auto item = std::make_pair(std::string("OTHER"), std::string("float"));
    goEachWay(
        [](EqualChannels & channels) -> auto& { return channels.input().params; }, item);
}

TEST_F(PlaybackEdits, OfWholeStreamsAndByTheirOwnCalls) {
    EqualChannels channels;
    channels.expectRight();
    const float value[] = {0.95f, 0.96f, 0.97f};
    channels.input().insertValue(1, value);
    channels.expectRight();
    std::vector<int> indices(3);
    channels.input().insertValues(1, value, 3, indices.data());
    channels.output().insertValues(3, value, 1, indices.data());
    channels.expectRight();
    channels.input() = Stream(channels.output());
    channels.expectRight();
    channels.output().stride = 1;
    channels.expectRight();
}

/// The values are added after their key time, and make it play.
TEST_F(PlaybackEdits, WhereAnIndexAppendsTheValues) {
    EqualChannels channels;
    const auto mesh = boost::make_shared<Mesh>("mesh", "");
    mesh->addVerticesMapping(StreamMapping(POSITION, channels.outputPointer(), 0));
    TriangleMeshPrimitive primitive(mesh, {StreamMapping(VERTEX, channels.outputPointer(), 0)});
    channels.output().allowDuplicates = false;
    channels.output().values.reserve(1000);
    for (int key = 0; key < 5; ++key) {
        const float number = 50.0f + static_cast<float>(key);
        channels.input().values.push_back(1 + static_cast<float>(key) / 20);
        channels.expectRight();
        if (key % 2 == 0) {
            const float values[] = {number, 0, number};
            std::vector<int> indices(1);
            channels.output().insertValues(3, values, 1, indices.data());
        } else {
            const auto vertex = boost::make_shared<Vertex>();
            vertex->setPosition(number, number, 0);
            const auto face = boost::make_shared<Triangle>(vertex, vertex, vertex);
            EXPECT_TRUE(primitive.addTriangle(face, true));
        }
        channels.expectRight();
    }
}

TEST_F(PlaybackEdits, ThroughReferencesThatAreStillAlive) {
    EqualChannels channels;
    auto& time = channels.input().values[4];
    auto& value = channels.output().values.back();
    auto& name = channels.names().stringValues[2];
    for (int i = 0; i < 3; ++i) {
        channels.expectRight();
        time -= 0.02f;
        channels.expectRight();
        value += 100;
        name = i == 1 ? "LINEAR" : "STEP";
        channels.play();
    }
    channels.expectRight();
}

TEST_F(PlaybackEdits, ThroughAReferenceThatCameWithItsList) {
    EqualChannels channels;
    FloatArray moved(channels.input().values);
    auto& movedTime = moved[5];
    channels.input().values = std::move(moved);
    channels.expectRight();
    movedTime += 0.03f;
    channels.expectRight();
}

}  // namespace
}  // namespace vantorix::scene
