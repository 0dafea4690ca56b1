#include <boost/make_shared.hpp>

#include "core_api/event/EventBase.h"
#include "core_api/event/EventManager.h"

#include "fuzz/scene/SceneFuzzer.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::fuzz {
namespace {

using core::event::EventType;
using scene::SceneManager;

EventType eventType(CallReader& reader) {
    static const std::array<const char*, 12> names{"SceneUpdate",
                                                   "SceneTopologyUpdate",
                                                   "NodeTransformationUpdate",
                                                   "NodeNewChild",
                                                   "NodeAddedLayer",
                                                   "NodeMaterialChanged",
                                                   "NodeAddedLight",
                                                   "GeometryTopologyUpdate",
                                                   "SceneNewCamera",
                                                   "SceneSurroundingUpdate",
                                                   "L_NewMaterial",
                                                   "DisplayMessageAt"};
    return EventType(reader.of(names));
}

/// Makes the fuzzer's next call whenever it hears something. May be destroyed by that call.
class Meddler : public core::event::EventListener {
public:
    explicit Meddler(SceneFuzzer& fuzzer) : fuzzer_(fuzzer) {}
    ~Meddler() override { endDeliveries(); }
    void handleEvent(core::event::Event) override { fuzzer_.stepInHandler(); }

private:
    SceneFuzzer& fuzzer_;
};

/// Handles by functions of its own, of which one may be added later.
class MeddlingBase : public core::event::EventBase {
public:
    MeddlingBase(boost::shared_ptr<core::event::EventManager> events, SceneFuzzer& fuzzer)
        : EventBase(std::move(events)), fuzzer_(fuzzer) {}
    void listenTo(const EventType& type) {
        registerHandler(type, [this](const core::event::Event&) { fuzzer_.stepInHandler(); });
    }

private:
    SceneFuzzer& fuzzer_;
};

}  // namespace

void SceneFuzzer::sendLocalEvent() {
    static constexpr std::array<const char*, 5> names{"L_NewEffect", "L_NewMaterial",
                                                      "L_MaterialParameterUpdated",
                                                      "L_MaterialTechniqueChanged", "SceneUpdate"};
    auto& manager = events();
    const char* const name = reader_.of(names);
    auto payload = reader_.name();
    for (unsigned int i = reader_.below(4); i > 0; --i) payload += "," + reader_.name();
    manager->triggerEvent(name, reader_.flag() ? payload + ",texture" : payload);
}

void SceneFuzzer::changeListeners() {
    auto& slot = reader_.of(listeners_);
    const auto manager = events();
    const auto type = eventType(reader_);
    if (!slot) {
        if (reader_.flag()) {
            slot = boost::make_shared<Meddler>(*this);
        } else {
            slot = boost::make_shared<MeddlingBase>(manager, *this);
        }
    }
    const auto base = boost::dynamic_pointer_cast<MeddlingBase>(slot);
    switch (reader_.below(6)) {
        case 0:
            manager->unregisterListener(type, slot.get());
            return;
        case 1:
            manager->unregisterFromAll(slot.get());
            return;
        case 2:
            if (base) base->setEventManager(reader_.flag() ? manager : nullptr);
            return;
        default:
            if (base) return base->listenTo(type);
            manager->registerListener(type, slot.get());
    }
}

void SceneFuzzer::dropListener() { reader_.of(listeners_).reset(); }

void SceneFuzzer::replaceEvents() {
    auto& slot = events();
    auto& target = scene();
    switch (reader_.below(3)) {
        case 0:
            slot = makeEvents();
            return;
        case 1:
            return target->setEventManager(nullptr);
        default:
            target->setEventManager(slot);
    }
}

void SceneFuzzer::replaceScene() {
    auto& slot = scene();
    if (++bigCalls_ > mostBigCalls) return;
    if (reader_.flag()) slot->stop();
    if (reader_.flag()) slot = boost::make_shared<SceneManager>(events());
}

}  // namespace vantorix::fuzz
