#include "scene/graph/SceneLife.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "core/utils/SpinLock.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::scene {

using core::utils::SpinLock;

struct SceneLife::Place : SceneHandle::Place {
    SpinLock lock;  ///< Held while a handle is locked, and while the life ends.
    Place* next = nullptr;
};

/// The places that no scene uses. There are as many places as there were scenes at one time.
class SceneLife::Places {
public:
    static Places& instance() {
        static auto* const places = new Places;  // Never destroyed: nodes may outlive statics.
        return *places;
    }

    Place& take(std::uint64_t& life) {
        const boost::lock_guard<boost::mutex> guard(mutex_);
        life = ++lives_;
        if (!free_) return *new Place;
        auto& place = *free_;
        free_ = place.next;
        return place;
    }

    void giveBack(Place& place) {
        const boost::lock_guard<boost::mutex> guard(mutex_);
        place.next = free_;
        free_ = &place;
    }

private:
    boost::mutex mutex_;
    Place* free_ = nullptr;
    std::uint64_t lives_ = 0;
};

const SceneHandle::Place SceneHandle::nowhere;

SceneLife::SceneLife(SceneManager& scene) : place_(Places::instance().take(handle_.life_)) {
    handle_.place_ = &place_;
    place_.scene = &scene;
    place_.life.store(handle_.life_, std::memory_order_release);
}

SceneLife::~SceneLife() {
    end();
    Places::instance().giveBack(place_);
}

void SceneLife::end() {
    const boost::lock_guard<SpinLock> guard(place_.lock);
    place_.life.store(0, std::memory_order_release);
}

boost::shared_ptr<SceneManager> SceneHandle::lock() const {
    if (place_ == &nowhere) return nullptr;
    auto& place = static_cast<SceneLife::Place&>(const_cast<Place&>(*place_));
    const boost::lock_guard<SpinLock> guard(place.lock);
    auto* const scene = get();
    return scene ? scene->weak_from_this().lock() : nullptr;
}

}  // namespace vantorix::scene
