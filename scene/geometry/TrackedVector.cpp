#include "scene/geometry/TrackedVector.h"

#include "scene/geometry/WatchedEdits.h"

namespace vantorix::scene {

void noteWatchedEdit() noexcept { watchedEdits.note(); }

}  // namespace vantorix::scene
