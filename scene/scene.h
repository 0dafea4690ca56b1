#pragma once

/// Everything of vantorix_scene: the scene graph and all that stands in its libraries.
