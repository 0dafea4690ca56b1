#pragma once

#include <string>

#include <boost/weak_ptr.hpp>

namespace vantorix::core::event {
class EventType;
}

namespace vantorix::scene {

class SceneManager;

/// Sends an event whose payload is @p id through the scene manager. Nothing is made when the scene
/// is gone or nobody can notice the event.
void sendUpdateEvent(const boost::weak_ptr<SceneManager>& sceneManager,
                     const core::event::EventType& type, const std::string& id);

}  // namespace vantorix::scene
