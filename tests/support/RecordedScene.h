#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/event/Event.h"
#include "core_api/event/EventManager.h"

#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::test {

using Names = std::vector<std::string>;

/// An event manager that overrides the dispatch: it sees every event, listened to or not.
class RecordingEventManager : public core::event::EventManager {
public:
    using EventManager::triggerEvent;

    void triggerEvent(core::event::Event event) override {
        {
            const boost::lock_guard<boost::mutex> lock(mutex_);
            names_.push_back(event.getEventType().getName());
            lines_.push_back(names_.back() + "|" + event.getEventData().toString());
        }
        EventManager::triggerEvent(event);
    }

    Names names() const {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        return names_;
    }

    /// "name|payload" per event.
    Names lines() const {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        return lines_;
    }

    void forget() {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        names_.clear();
        lines_.clear();
    }

private:
    mutable boost::mutex mutex_;
    Names names_;
    Names lines_;
};

/// A running scene that records its events and stops when the test ends.
class RecordedScene {
public:
    RecordedScene()
        : events(boost::make_shared<RecordingEventManager>()),
          manager(boost::make_shared<scene::SceneManager>(events)) {}

    ~RecordedScene() {
        if (manager) manager->stop();
    }

    boost::shared_ptr<scene::Node> makeNode(const std::string& id) const {
        const auto node = boost::make_shared<scene::Node>(manager);
        node->setID(id);
        return node;
    }

    scene::SceneManager* operator->() const { return manager.get(); }
    Names eventNames() const { return events->names(); }
    Names eventLines() const { return events->lines(); }
    void forgetEvents() const { events->forget(); }

    boost::shared_ptr<RecordingEventManager> events;
    boost::shared_ptr<scene::SceneManager> manager;
};

}  // namespace vantorix::test
