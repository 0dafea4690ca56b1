#pragma once

#include <string>

#include "core_api/CoreExport.h"

namespace vantorix::core::logger {

/// Turns a message into the line that a writer writes; on several threads at once when the writer
/// is shared.
class VANTORIX_CORE_EXPORT IDecorator {
public:
    virtual std::string decorate(std::string line) = 0;
    virtual ~IDecorator();
};

}  // namespace vantorix::core::logger
