#pragma once

#include "scene/transform/EditCounter.h"

namespace vantorix::scene {

/// First changes of arrays of streams since somebody asked to be told of them.
inline EditCounter watchedEdits;

}  // namespace vantorix::scene
