#pragma once

#include "core_api/event/EventType.h"

/// The types of the events that the scene library sends. Kept as constants: an event of a type
/// that is already there allocates nothing for it.
namespace vantorix::scene::events {

extern const core::event::EventType nodeAddedLayer;
extern const core::event::EventType nodeAddedLight;
extern const core::event::EventType nodeMaterialChanged;
extern const core::event::EventType nodeNewChild;
extern const core::event::EventType nodeRemovedLayer;
extern const core::event::EventType nodeTransformationUpdate;
extern const core::event::EventType sceneNewCamera;
extern const core::event::EventType sceneSurroundingUpdate;
extern const core::event::EventType sceneTopologyUpdate;
extern const core::event::EventType sceneUpdate;
extern const core::event::EventType syncScene;

}  // namespace vantorix::scene::events
