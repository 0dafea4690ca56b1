#include <osg/MatrixTransform>
#include <osgAnimation/BasicAnimationManager>
#include <osgAnimation/Channel>
#include <osgAnimation/StackedRotateAxisElement>
#include <osgAnimation/StackedScaleElement>
#include <osgAnimation/StackedTranslateElement>
#include <osgAnimation/UpdateMatrixTransform>
#include <osgUtil/UpdateVisitor>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/playback/PlaybackCases.h"

namespace vantorix::bench {
namespace {

/// The same nodes and keys, updated by callbacks. Linked by hand: the manager compares every node
/// with every channel.
struct OpenSceneGraphScene {
    explicit OpenSceneGraphScene(int nodeCount) {
        osg::ref_ptr<osgAnimation::Animation> animation = new osgAnimation::Animation;
        for (int i = 0; i < nodeCount; ++i) addNode(*animation, "animated" + std::to_string(i));
        animation->setDuration(keyTime(keyCount - 1));
        manager->registerAnimation(animation);
        manager->buildTargetReference();
        manager->playAnimation(animation);
        visitor.setFrameStamp(stamp);
        show(0);
    }

    void addNode(osgAnimation::Animation& animation, const std::string& id) {
        osg::ref_ptr<osg::MatrixTransform> node = new osg::MatrixTransform;
        osg::ref_ptr<osgAnimation::UpdateMatrixTransform> update =
            new osgAnimation::UpdateMatrixTransform(id);
        auto& elements = update->getStackedTransforms();
        elements.push_back(new osgAnimation::StackedTranslateElement("translate"));
        elements.push_back(new osgAnimation::StackedRotateAxisElement("rotate", osg::Z_AXIS, 0));
        elements.push_back(new osgAnimation::StackedScaleElement("scale"));
        node->setUpdateCallback(update);
        root->addChild(node);
        nodes.push_back(node);
        addChannel<osgAnimation::Vec3LinearChannel>(animation, *update, "translate", [](int key) {
            return osg::Vec3(keyOffset(key), keyOffset(key), keyOffset(key));
        });
        addChannel<osgAnimation::FloatLinearChannel>(animation, *update, "rotate", [](int key) {
            return keyDegrees(key) * radiansPerDegree;
        });
        addChannel<osgAnimation::Vec3LinearChannel>(animation, *update, "scale", [](int key) {
            return osg::Vec3(keyScale(key), keyScale(key), keyScale(key));
        });
    }

    template <class Channel, class Value>
    static void addChannel(osgAnimation::Animation& animation,
                           osgAnimation::UpdateMatrixTransform& update, const std::string& element,
                           Value value) {
        osg::ref_ptr<Channel> channel = new Channel;
        channel->setTargetName(update.getName());
        channel->setName(element);
        auto* const keys = channel->getOrCreateSampler()->getOrCreateKeyframeContainer();
        for (int key = 0; key < keyCount; ++key) {
            keys->push_back(
                typename Channel::KeyframeContainerType::value_type(keyTime(key), value(key)));
        }
        animation.getChannels().push_back(channel);  // addChannel asks all of them each time.
        update.link(channel);
    }

    double show(int time) {
        stamp->setSimulationTime(time / 1000.0);
        stamp->setFrameNumber(stamp->getFrameNumber() + 1);
        manager->update(time / 1000.0);
        root->accept(visitor);
        double sum = 0;
        for (const auto& node : nodes) sum += node->getMatrix()(3, 0);
        return sum;
    }

    bool isAt(int time) const {
        const auto& world = nodes.back()->getMatrix();  // For row vectors.
        return isPoseAt(time, world(3, 2), world(0, 1));
    }

    osg::ref_ptr<osgAnimation::BasicAnimationManager> manager =
        new osgAnimation::BasicAnimationManager;
    osg::ref_ptr<osg::Group> root = new osg::Group;
    osg::ref_ptr<osg::FrameStamp> stamp = new osg::FrameStamp;
    osgUtil::UpdateVisitor visitor;
    std::vector<osg::ref_ptr<osg::MatrixTransform>> nodes;
};

void openSceneGraphInSequence(benchmark::State& state) { playFrames<OpenSceneGraphScene>(state); }
BENCHMARK(openSceneGraphInSequence)->Arg(100)->Arg(1000)->Arg(10000);

void openSceneGraphAtRandom(benchmark::State& state) { playAnyTimes<OpenSceneGraphScene>(state); }
BENCHMARK(openSceneGraphAtRandom)->Arg(100)->Arg(1000)->Arg(10000);

}  // namespace
}  // namespace vantorix::bench
