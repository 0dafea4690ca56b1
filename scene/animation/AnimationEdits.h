#pragma once

#include "scene/transform/EditCounter.h"

namespace vantorix::scene {

/// Changes of what animations and samplers list: channels, children and inputs. What stands in the
/// streams is not counted.
inline EditCounter animationEdits;

/// Assignments to animations, each of which is one of the changes above: nothing else changes the
/// target IDs of an animation once it is a child.
inline EditCounter animationAssignments;

}  // namespace vantorix::scene
