#pragma once

#include <cstddef>
#include <vector>

#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class Animation;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::cli {

/// What happened while the scene's own thread played an animation. Times are in milliseconds.
struct RealtimeReport {
    double seconds = 0.0;  ///< How long it was let to play.
    std::size_t cycles = 0;
    std::size_t poses = 0;       ///< Updates that moved nodes.
    std::size_t syncEvents = 0;  ///< "SyncScene".
    double interval = 0.0;       ///< Mean time from one cycle to the next.
    double jitter = 0.0;         ///< Standard deviation of that time.
    double longestInterval = 0.0;
    double update = 0.0;  ///< Mean time of one update.
    double longestUpdate = 0.0;
};

/// Lets the scene's thread play @p animation once, but for @p mostSeconds at most.
RealtimeReport playInRealtime(scene::SceneManager& scene,
                              boost::shared_ptr<scene::Animation> animation, double mostSeconds);

}  // namespace vantorix::apps::cli
