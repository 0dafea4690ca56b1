// What listeners do to a scene while it works. The scripted operations run under one kind of
// hostility after the other; after each operation the scene must agree with itself and be usable.

#include <functional>
#include <limits>
#include <ostream>
#include <stdexcept>

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"

#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/controller/Controller.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "tests/reliability/SceneCheck.h"
#include "tests/reliability/ScriptedScene.h"
#include "tests/support/CycleControl.h"

namespace vantorix::test {
namespace {

using core::event::Event;
using core::event::EventBase;
using core::event::EventManager;
using core::event::EventType;
using namespace vantorix::scene;

/// A listener's turn: the scene it is in, what it heard, and who sent that, or the root.
struct Turn {
    ScriptedScene& scripted;
    const Event& event;
    boost::shared_ptr<Node> sender;
    int number;
    boost::shared_ptr<EventBase>& self;

    SceneManager& scene() const { return *scripted.scene; }
    /// Keeps deeds that add nodes from going on for ever.
    bool areScenesSmall() const {
        return scene().getNodeArray().size() + scripted.other->getNodeArray().size() < 100;
    }
};

using Listeners = std::vector<boost::shared_ptr<EventBase>>;

struct Hostility {
    const char* name;
    std::function<void(const Turn&)> act;
    /// It breaks streams by hand: then nothing has to agree with them any more.
    bool breaksLibraries = false;
};

std::ostream& operator<<(std::ostream& out, const Hostility& hostility) {
    return out << hostility.name;
}

const std::vector<const char*>& eventNames() {
    static const std::vector<const char*> names = {
        "NodeTransformationUpdate", "NodeNewChild",   "SceneTopologyUpdate", "NodeAddedLayer",
        "NodeRemovedLayer",         "NodeAddedLight", "NodeMaterialChanged", "SceneUpdate",
        "SceneSurroundingUpdate",   "SceneNewCamera", "CameraUpdated",       "LightUpdated",
        "GeometryTopologyUpdate",   "SyncScene",      "DisplayMessageAt"};
    return names;
}

/// Listens to everything in both scenes and acts on it, also on what it causes, to a depth of two.
class HostileListener {
public:
    HostileListener(ScriptedScene& scripted, const Hostility& hostility)
        : scripted_(scripted), hostility_(hostility) {
        for (const auto& scene : {scripted.scene, scripted.other}) {
            managers_.push_back(scene->getEventManager());
        }
        listen();
    }

    void listen() {
        listeners_.assign(managers_.size(), nullptr);
        for (std::size_t i = 0; i < managers_.size(); ++i) {
            listeners_[i] = boost::make_shared<EventBase>(managers_[i]);
            for (const auto* name : eventNames()) {
                listeners_[i]->registerHandler(
                    EventType(name), [this, i](const Event& event) { hear(event, listeners_[i]); });
            }
        }
    }

    void rest() { listeners_.clear(); }
    int turns() const { return turns_; }
    void beginStep() { left_ = 60; }

private:
    void hear(const Event& event, boost::shared_ptr<EventBase>& self) {
        // What the scene's own thread announces would have to be answered under the scene lock.
        if (boost::this_thread::get_id() != home_) return;
        if (depth_ > 1 || left_ == 0) return;
        --left_;
        struct Depth {
            explicit Depth(int& itsLevel) : level(++itsLevel) {}
            ~Depth() { --level; }
            int& level;
        } const depth(depth_);
        hostility_.act(
            {scripted_, event, scripted_.node(event.getEventData().getArg(1)), turns_++, self});
    }

    ScriptedScene& scripted_;
    const Hostility& hostility_;
    std::vector<boost::shared_ptr<EventManager>> managers_;
    Listeners listeners_;
    const boost::thread::id home_ = boost::this_thread::get_id();
    int depth_ = 0;
    int left_ = 0;
    int turns_ = 0;
};

struct OnPurpose : std::runtime_error {
    OnPurpose() : runtime_error("on purpose") {}
};

void clearStreams(Mesh& mesh) {
    for (const auto& stream : mesh.getStreams()) {
        stream->values.clear();
        stream->stride = 0;
    }
    mesh.clearStreams();
    mesh.clearVertices();
}

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr int largest = std::numeric_limits<int>::max();

std::vector<Hostility> hostilities() {
    return {
        {"RemovesTheSender", [](const Turn& turn) { turn.scene().removeNode(turn.sender); }},
        {"RemovesTheSendersParent",
         [](const Turn& turn) { turn.scene().removeNode(turn.sender->getParent()); }},
        {"RenamesToClash",
         [](const Turn& turn) {
             turn.sender->setID(turn.number % 2 == 0 ? "hand" : "");
             turn.sender->setName("name of arm");
         }},
        {"MovesTheSenderElsewhere",
         [](const Turn& turn) {
             turn.scene().removeNode(turn.sender);
             turn.scripted.node(turn.number % 2 == 0 ? "arm" : "flag")->addNode(turn.sender);
         }},
        {"AttachesTheSenderTwice",
         [](const Turn& turn) {
             if (turn.areScenesSmall()) turn.scene().getRoot()->addNode(turn.sender);
         }},
        {"GivesTheSenderToTheOtherScene",
         [](const Turn& turn) {
             if (turn.areScenesSmall()) turn.scripted.other->getRoot()->addNode(turn.sender);
         }},
        {"DropsTheScene",
         [](const Turn& turn) {
             turn.scripted.scene = boost::make_shared<SceneManager>(turn.scene().getEventManager());
         }},
        {"DropsTheOtherScene",
         [](const Turn& turn) { turn.scripted.other = boost::make_shared<SceneManager>(nullptr); }},
        {"ReplacesTheRoot",
         [](const Turn& turn) {
             turn.scene().setRoot(boost::make_shared<Node>(turn.scripted.scene));
             turn.scripted.other->setRoot(boost::make_shared<Node>(turn.scripted.other));
         }},
        {"EmptiesTheRoot",
         [](const Turn& turn) {
             const auto root = turn.scene().getRoot();
             while (root->getChildCount() > 0) root->removeChild(root->getChildNode(0));
         }},
        {"DestroysItself", [](const Turn& turn) { turn.self.reset(); }},
        {"EndsAllRegistrations",
         [](const Turn& turn) {
             const auto manager = turn.scene().getEventManager();
             if (!manager || !turn.self) return;
             manager->unregisterFromAll(turn.self.get());
             turn.self->setEventManager(nullptr);
             turn.self->setEventManager(manager);
         }},
        {"RegistersOthers",
         [others = std::make_shared<Listeners>()](const Turn& turn) {
             if (others->size() > 20) others->erase(others->begin(), others->begin() + 15);
             others->push_back(boost::make_shared<EventBase>(turn.scene().getEventManager()));
             const std::weak_ptr<Listeners> watched = others;
             others->back()->registerHandler(turn.event.getEventType(), [watched](const Event&) {
                 const auto alive = watched.lock();
                 if (alive && alive->size() > 1) alive->erase(alive->begin());
             });
         }},
        {"MergesWithinAMerge",
         [](const Turn& turn) {
             if (turn.areScenesSmall()) {
                 turn.scene().mergeSceneManager(turn.scripted.other, turn.number % 64, "arm");
             }
         }},
        {"MergesBackIntoTheSource",
         [](const Turn& turn) {
             if (turn.areScenesSmall()) {
                 turn.scripted.other->mergeSceneManager(turn.scripted.scene, turn.number % 64, "");
             }
         }},
        {"StopsTheScene", [](const Turn& turn) { turn.scene().stop(); }},
        {"EditsKeysDuringPlayback",
         [](const Turn& turn) {
             const auto animation = turn.scripted.player->getAnimation();
             if (!animation) return;
             animation->insertKeyFrame(turn.sender, 0.1f * static_cast<float>(turn.number % 20));
             animation->removeKeyFrame(0.5f);
         }},
        {"TakesTheAnimationAway",
         [](const Turn& turn) {
             const auto animation = turn.scripted.player->getAnimation();
             turn.scripted.player->setAnimation(nullptr);
             turn.scene().removeAllAnimations();
             if (turn.number % 2 == 0) turn.scripted.player->setAnimation(animation);
         }},
        {"EmptiesTheGeometry",
         [](const Turn& turn) {
             clearStreams(*turn.scripted.mesh(turn.number % 2 == 0 ? "cloth" : "flag"));
         },
         true},
        {"SubdividesWithinASubdivision",
         [](const Turn& turn) {
             if (turn.scripted.mesh("flag")->getPrimitiveCount() == 0 ||
                 turn.scripted.mesh("flag")->getPrimitive(0)->getCount() > 500) {
                 return;
             }
             const auto geometries = turn.scene().getGeometryManager();
             geometries->subDivideGeometry("flag", nullptr);
             geometries->recalculateVertexNormals("cloth");
         },
         true},  // The skin of the flag's neighbour is not told.
        {"ReplacesTheGeometries",
         [](const Turn& turn) {
             const auto events = turn.scene().getEventManager();
             turn.scene().setGeometryManager(boost::make_shared<GeometryManager>(events));
         }},
        {"BreaksTheSkin",
         [](const Turn& turn) {
             const auto controller = turn.scene().getControllerById("skin");
             if (!controller || !controller->getSkin()) return;
             controller->getSkin()->setV({7, largest, -1});
             controller->getSkin()->setVCount({0xFFFFFFFFu, 3});
             controller->getSkin()->setStreams({});
         },
         true},
        {"MorphsWithinAMorph",
         [](const Turn& turn) { turn.scene().morph(turn.scripted.other, 0.5f); }},
        {"EmptiesTheLibraries",
         [](const Turn& turn) {
             turn.scene().setMaterialList({});
             turn.scene().setEffectLibrary({});
             turn.scene().setImageLibrary({});
             turn.scene().setControllersLibrary({});
         }},
        {"ThrowsEveryThirdTime",
         [](const Turn& turn) {
             if (turn.number % 3 == 0) throw OnPurpose();
         }},
        {"ThrowsWhatIsNoException", [](const Turn&) { throw 42; }},
        {"AnswersWithTheSameEvent",
         [](const Turn& turn) { turn.scene().triggerEvent(turn.event); }},
        {"MovesWhatMoved", [](const Turn& turn) { turn.sender->addTranslation(1, 0, 0); }},
        {"MovesIntoNowhere",
         [](const Turn& turn) {
             turn.sender->setScale({notANumber, 0, -std::numeric_limits<float>::infinity()});
             turn.sender->addTranslation(std::numeric_limits<float>::max(), notANumber, 0);
         }},
        {"ReplacesTheEventManager",
         [](const Turn& turn) {
             turn.scene().setEventManager(turn.number % 2 == 0 ? boost::make_shared<EventManager>()
                                                               : nullptr);
         }},
        {"LocksAndUnlocksAtWill",
         [](const Turn& turn) {
             for (int i = turn.number % 3; i > 0; --i) turn.scene().lockScene();
             for (int i = turn.number % 5; i > 0; --i) turn.scene().unlockScene();
         }},
        {"JugglesControllers",
         [meddler = makeController([] { return true; })](const Turn& turn) {
             turn.scene().addSceneController(meddler);
             turn.scene().removeSceneController(meddler);
             turn.scene().setAnimationManager(nullptr);
         }},
        {"JugglesLayers",
         [](const Turn& turn) {
             for (const int layer : turn.sender->getLayers()) turn.sender->removeFromLayer(layer);
             turn.sender->addToLayer(turn.number % 2 == 0 ? -1 : largest);
             const auto layers = turn.scene().getLayerManager();
             if (turn.number < 5) layers->mergeLayers(layers, false);  // Each time twice as many.
         }},
    };
}

struct HostileListeners : testing::TestWithParam<Hostility> {};

void expectWhole(const ScriptedScene& scripted, const Hostility& hostility, const char* step) {
    for (const auto& scene : {scripted.scene, scripted.other}) {
        EXPECT_THAT(findTreeFaults(*scene), testing::IsEmpty()) << "after " << step;
        EXPECT_THAT(findUseFaults(scene), testing::IsEmpty()) << "after " << step;
        if (hostility.breaksLibraries) continue;
        EXPECT_THAT(findLibraryFaults(*scene), testing::IsEmpty()) << "after " << step;
    }
}

/// Trees that are attached several times multiply with every merge.
void startAnewIfLarge(const boost::shared_ptr<SceneManager>& scene) {
    if (scene->getNodeArray().size() > 150) scene->setRoot(boost::make_shared<Node>(scene));
}

TEST_P(HostileListeners, LeaveTheSceneWhole) {
    ScriptedScene scripted(boost::make_shared<EventManager>(), boost::make_shared<EventManager>());
    HostileListener listener(scripted, GetParam());
    for (const auto& step : ScriptedScene::script()) {
        startAnewIfLarge(scripted.scene);
        startAnewIfLarge(scripted.other);
        listener.beginStep();
        try {
            step.run(scripted);
        } catch (const OnPurpose&) {  // It comes out of the call that sent the event.
        } catch (int) {
        }
        listener.rest();
        expectWhole(scripted, GetParam(), step.name);
        if (HasFailure()) return;
        listener.listen();
    }
    EXPECT_GT(listener.turns(), 0);
}

INSTANTIATE_TEST_SUITE_P(All, HostileListeners, testing::ValuesIn(hostilities()),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace vantorix::test
