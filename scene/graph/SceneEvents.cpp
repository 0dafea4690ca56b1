#include "scene/graph/SceneEvents.h"

namespace vantorix::scene::events {

using core::event::EventType;

const EventType nodeAddedLayer("NodeAddedLayer");
const EventType nodeAddedLight("NodeAddedLight");
const EventType nodeMaterialChanged("NodeMaterialChanged");
const EventType nodeNewChild("NodeNewChild");
const EventType nodeRemovedLayer("NodeRemovedLayer");
const EventType nodeTransformationUpdate("NodeTransformationUpdate");
const EventType sceneNewCamera("SceneNewCamera");
const EventType sceneSurroundingUpdate("SceneSurroundingUpdate");
const EventType sceneTopologyUpdate("SceneTopologyUpdate");
const EventType sceneUpdate("SceneUpdate");
const EventType syncScene("SyncScene");

}  // namespace vantorix::scene::events
