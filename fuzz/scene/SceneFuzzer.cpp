// Fuzzes graph, libraries, merging and events: the input is a list of calls.

#include "fuzz/scene/SceneFuzzer.h"

#include <boost/make_shared.hpp>

#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"
#include "core_api/logger/Logger.h"

#include "fuzz/Fuzzer.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "scene/material/Material.h"

namespace vantorix::fuzz {
namespace {

/// Sees every event, listened to or not.
class SeeingEventManager : public core::event::EventManager {
public:
    using EventManager::triggerEvent;
    void triggerEvent(core::event::Event event) override { EventManager::triggerEvent(event); }
};

}  // namespace

SceneFuzzer::SceneFuzzer(CallReader reader) : reader_(reader) {
    for (auto& manager : events_) manager = makeEvents();
    for (auto& manager : scenes_) {
        manager = boost::make_shared<scene::SceneManager>(reader_.of(events_));
    }
}

SceneFuzzer::~SceneFuzzer() {
    handlerCalls_ = ~0u;  // What is sent while all goes makes no calls.
    for (auto& listener : listeners_) listener.reset();
}

void SceneFuzzer::run() {
    while (!reader_.isAtEnd()) step();
    for (const auto& manager : scenes_) checkTree(*manager);
}

void SceneFuzzer::stepInHandler() {
    constexpr unsigned int mostOpen = 3, mostCalls = 200;
    if (openHandlers_ >= mostOpen || handlerCalls_ >= mostCalls || reader_.isAtEnd()) return;
    ++handlerCalls_;
    ++openHandlers_;
    step();
    --openHandlers_;
}

void SceneFuzzer::step() {
    static constexpr std::array<Call, 29> calls{
        &SceneFuzzer::addNode,        &SceneFuzzer::addNode,
        &SceneFuzzer::addNode,        &SceneFuzzer::makeNode,
        &SceneFuzzer::takeNode,       &SceneFuzzer::dropNode,
        &SceneFuzzer::removeNode,     &SceneFuzzer::renameNode,
        &SceneFuzzer::moveNode,       &SceneFuzzer::transformNode,
        &SceneFuzzer::changeLayers,   &SceneFuzzer::instantiate,
        &SceneFuzzer::setMaterial,    &SceneFuzzer::replaceRoot,
        &SceneFuzzer::lookUp,         &SceneFuzzer::askBounds,
        &SceneFuzzer::editImages,     &SceneFuzzer::createCameraOrLight,
        &SceneFuzzer::editMaterials,  &SceneFuzzer::editGeometries,
        &SceneFuzzer::mergeLibraries, &SceneFuzzer::mergeScenes,
        &SceneFuzzer::blendScenes,    &SceneFuzzer::sendLocalEvent,
        &SceneFuzzer::replaceEvents,  &SceneFuzzer::changeListeners,
        &SceneFuzzer::dropListener,   &SceneFuzzer::replaceScene,
        &SceneFuzzer::checkNow};
    (this->*reader_.of(calls))();
}

SceneFuzzer::ScenePointer& SceneFuzzer::scene() { return reader_.of(scenes_); }

SceneFuzzer::EventsPointer& SceneFuzzer::events() { return reader_.of(events_); }

SceneFuzzer::NodePointer& SceneFuzzer::node() {
    auto& slot = reader_.of(nodes_);
    if (!slot) slot = boost::make_shared<scene::Node>(scenes_[0]);
    return slot;
}

SceneFuzzer::EventsPointer SceneFuzzer::makeEvents() {
    if (reader_.oneIn(4)) return boost::make_shared<SeeingEventManager>();
    return boost::make_shared<core::event::EventManager>();
}

}  // namespace vantorix::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    vantorix::core::logger::Logger::active = false;
    vantorix::fuzz::SceneFuzzer(vantorix::fuzz::CallReader(bytes, size)).run();
    return 0;
}
