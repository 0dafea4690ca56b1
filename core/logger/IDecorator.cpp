#include "core_api/logger/IDecorator.h"

namespace vantorix::core::logger {

// Here, so that one library holds the type's table and information.
IDecorator::~IDecorator() = default;

}  // namespace vantorix::core::logger
