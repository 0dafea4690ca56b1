#pragma once

namespace vantorix::scene {

/// The axis of the scene's coordinates that points up.
enum UpAxis : int { X_UP = 0, Y_UP = 1, Z_UP = 2 };

}  // namespace vantorix::scene
