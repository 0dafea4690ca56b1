#include <Ogre.h>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/playback/PlaybackCases.h"

namespace vantorix::bench {
namespace {

/// The same nodes and keys in a scene without a renderer. A key frame holds all three values.
struct OgreScene {
    explicit OgreScene(int nodeCount) : log(makeLog()), root("", "", "") {
        manager = root.createSceneManager();
        auto* const animation = manager->createAnimation("animation", keyTime(keyCount - 1));
        animation->setInterpolationMode(Ogre::Animation::IM_LINEAR);
        for (int i = 0; i < nodeCount; ++i) addNode(*animation, static_cast<unsigned short>(i));
        playing = manager->createAnimationState("animation");
        playing->setEnabled(true);
        playing->setLoop(false);
    }
    ~OgreScene() { root.destroySceneManager(manager); }
    OgreScene(const OgreScene&) = delete;
    OgreScene& operator=(const OgreScene&) = delete;

    static std::unique_ptr<Ogre::LogManager> makeLog() {
        auto log = std::make_unique<Ogre::LogManager>();
        log->createLog("", true, false, true);
        return log;
    }

    void addNode(Ogre::Animation& animation, unsigned short number) {
        auto* const node = manager->getRootSceneNode()->createChildSceneNode();
        nodes.push_back(node);
        auto* const track = animation.createNodeTrack(number, node);
        for (int i = 0; i < keyCount; ++i) {
            auto* const key = track->createNodeKeyFrame(keyTime(i));
            key->setTranslate(Ogre::Vector3(keyOffset(i)));
            key->setRotation(Ogre::Quaternion(Ogre::Degree(keyDegrees(i)), Ogre::Vector3::UNIT_Z));
            key->setScale(Ogre::Vector3(keyScale(i)));
        }
    }

    float show(int time) {
        playing->setTimePosition(static_cast<float>(time) / 1000.0f);
        manager->_applySceneAnimations();
        manager->getRootSceneNode()->_update(true, false);
        float sum = 0;
        for (const auto* const node : nodes) sum += node->_getFullTransform()[0][3];
        return sum;
    }

    bool isAt(int time) const {
        const auto& world = nodes.back()->_getFullTransform();
        return isPoseAt(time, world[2][3], world[1][0]);
    }

    std::unique_ptr<Ogre::LogManager> log;
    Ogre::Root root;
    Ogre::SceneManager* manager = nullptr;
    Ogre::AnimationState* playing = nullptr;
    std::vector<Ogre::SceneNode*> nodes;
};

void ogreInSequence(benchmark::State& state) { playFrames<OgreScene>(state); }
BENCHMARK(ogreInSequence)->Arg(100)->Arg(1000)->Arg(10000);

void ogreAtRandom(benchmark::State& state) { playAnyTimes<OgreScene>(state); }
BENCHMARK(ogreAtRandom)->Arg(100)->Arg(1000)->Arg(10000);

}  // namespace
}  // namespace vantorix::bench
