#include "core_api/system/IClock.h"

namespace vantorix::core::system {

// Here, so that one library holds the type's table and information.
IClock::~IClock() = default;

}  // namespace vantorix::core::system
