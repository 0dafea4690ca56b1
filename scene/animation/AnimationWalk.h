#pragma once

#include <cstddef>
#include <vector>

#include <boost/unordered/unordered_map.hpp>

namespace vantorix::scene {

class Animation;

/// Walks an animation and its children, children in their order, with a stack of its own: however
/// deep they are nested, it ends. The lists of children must not change while they are walked.
///
/// An animation met inside itself is passed over, and one that is met again elsewhere counts again
/// where asked for. Since few nested repetitions make a walk of astronomic length, their number is
/// limited.
class AnimationWalk {
public:
    enum Order { PARENTS_FIRST, CHILDREN_FIRST };
    enum Repeats : std::size_t { SKIP_REPEATS = 0, VISIT_REPEATS = 65536 };

    AnimationWalk(Animation& top, Order order, Repeats repeats);

    /// The next animation, null at the end.
    Animation* next();

private:
    struct Level {
        Animation* animation;
        std::size_t nextChild;
    };

    bool enter(Animation& animation);
    Animation* leave();

    Order order_;
    std::size_t repeatsLeft_;
    Animation* top_;  ///< Null once it was entered.
    std::vector<Level> path_;
    boost::unordered_map<const Animation*, bool> isOnPath_;  ///< Has all animations that were met.
};

}  // namespace vantorix::scene
