#pragma once

#include <array>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "fuzz/CallReader.h"

namespace vantorix::core::event {
class EventBase;
class EventListener;
class EventManager;
}  // namespace vantorix::core::event

namespace vantorix::scene {
class IGeometry;
class Material;
class Node;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::fuzz {

/// Two scenes, and nodes, geometries, materials and listeners that belong to either, all of which
/// calls pick by number. Listeners make the next calls of the input from inside their handlers.
class SceneFuzzer {
public:
    explicit SceneFuzzer(CallReader reader);
    ~SceneFuzzer();
    SceneFuzzer(const SceneFuzzer&) = delete;
    SceneFuzzer& operator=(const SceneFuzzer&) = delete;

    /// Makes all calls, then checks both scenes.
    void run();

    /// A call from inside a handler, unless too many are open or were made already.
    void stepInHandler();

private:
    using NodePointer = boost::shared_ptr<scene::Node>;
    using ScenePointer = boost::shared_ptr<scene::SceneManager>;
    using EventsPointer = boost::shared_ptr<core::event::EventManager>;
    using Call = void (SceneFuzzer::*)();

    static constexpr std::size_t mostPlaces = 200;   ///< Of a tree that is still made larger.
    static constexpr unsigned int mostBigCalls = 6;  ///< Per input.

    void step();

    // What calls work on. None is ever empty when it is asked for.
    ScenePointer& scene();
    EventsPointer& events();
    NodePointer& node();

    // Calls, in TreeCalls.cpp.
    void makeNode();
    void takeNode();
    void dropNode();
    void addNode();
    void removeNode();
    void renameNode();
    void moveNode();
    void transformNode();
    void changeLayers();
    void instantiate();
    void setMaterial();
    void replaceRoot();
    void lookUp();
    void askBounds();

    // Calls, in LibraryCalls.cpp.
    void createCameraOrLight();
    void editImages();
    void editMaterials();
    void editGeometries();
    void mergeLibraries();
    void mergeScenes();
    void blendScenes();

    // Calls, in ListenerCalls.cpp.
    void sendLocalEvent();
    void changeListeners();
    void dropListener();
    void replaceEvents();
    void replaceScene();

    EventsPointer makeEvents();
    boost::shared_ptr<scene::IGeometry> makeGeometry();

    // Rules, in SceneRules.cpp.
    void checkNow();
    bool isSmall(scene::SceneManager& manager) const;
    void checkTree(scene::SceneManager& manager) const;
    void checkWorldMatrix(const scene::Node& node) const;

    CallReader reader_;
    std::array<EventsPointer, 2> events_;
    std::array<ScenePointer, 2> scenes_;
    std::array<NodePointer, 16> nodes_;
    std::array<boost::shared_ptr<scene::IGeometry>, 4> geometries_;
    std::array<boost::shared_ptr<scene::Material>, 4> materials_;
    std::array<boost::shared_ptr<core::event::EventListener>, 4> listeners_;
    unsigned int openHandlers_ = 0;
    unsigned int handlerCalls_ = 0;
    unsigned int bigCalls_ = 0;  ///< Merges and the like, which make a scene grow.
};

/// Places in the tree below @p top: a node counts as often as it can be reached, at most to about
/// a million.
std::size_t countPlaces(const scene::Node& top);

}  // namespace vantorix::fuzz
