#pragma once

#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

namespace vantorix::core::event {
class EventManager;
}
namespace vantorix::scene {
class AnimationManager;
class Mesh;
class Node;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::test {

/// A small scene with something in every library, a second one of the same structure to merge and
/// morph with, and positions for its joints. Its script takes it through every large operation,
/// the same way each time. Nothing here holds on to a scene but the two public references, so that
/// whoever resets them has released it.
class ScriptedScene {
public:
    using EventManagerPtr = boost::shared_ptr<core::event::EventManager>;

    struct Step {
        const char* name;
        void (*run)(ScriptedScene& scripted);
    };

    ScriptedScene(EventManagerPtr sceneEvents, EventManagerPtr otherEvents);
    ~ScriptedScene();
    ScriptedScene(const ScriptedScene&) = delete;
    ScriptedScene& operator=(const ScriptedScene&) = delete;

    /// One library call or a few; each asks the scene anew for what it works on.
    static const std::vector<Step>& script();

    /// The node of that ID; the root when there is none.
    boost::shared_ptr<scene::Node> node(const std::string& id) const;
    /// The mesh of that ID; an empty one when there is none.
    boost::shared_ptr<scene::Mesh> mesh(const std::string& id) const;

    boost::shared_ptr<scene::SceneManager> scene;
    boost::shared_ptr<scene::SceneManager> other;
    boost::shared_ptr<scene::AnimationManager> player;
};

}  // namespace vantorix::test
