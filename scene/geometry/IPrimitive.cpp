#include "scene/geometry/IPrimitive.h"

namespace vantorix::scene {

IPrimitive::~IPrimitive() = default;

}  // namespace vantorix::scene
