#pragma once

#include <functional>
#include <utility>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/make_shared.hpp>
#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/weak_ptr.hpp>

#include "scene/graph/ISceneController.h"

namespace vantorix::test {

/// Opens once it was reached a number of times; waiting for it needs no sleep.
class Gate {
public:
    void reach() {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        ++reached_;
        changed_.notify_all();
    }

    bool await(int times) {
        boost::unique_lock<boost::mutex> lock(mutex_);
        return changed_.wait_for(lock, boost::chrono::seconds(60),
                                 [&] { return reached_ >= times; });
    }

    int count() const {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        return reached_;
    }

private:
    mutable boost::mutex mutex_;
    boost::condition_variable changed_;
    int reached_ = 0;
};

/// Does what it is told in its update, after its gate was reached.
class Controller : public scene::ISceneController {
public:
    explicit Controller(std::function<bool()> action) : action_(std::move(action)) {}

    bool isReadOnly() override { return false; }
    void attach(boost::shared_ptr<scene::SceneManager> manager) override { attached = manager; }
    bool update(boost::posix_time::time_duration elapsed) override {
        total = total + elapsed;
        const bool changed = action_();
        updated.reach();
        return changed;
    }

    Gate updated;
    boost::weak_ptr<scene::SceneManager> attached;
    boost::posix_time::time_duration total;

private:
    std::function<bool()> action_;
};

inline boost::shared_ptr<Controller> makeController(std::function<bool()> action) {
    return boost::make_shared<Controller>(std::move(action));
}

}  // namespace vantorix::test
