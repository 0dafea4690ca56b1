#pragma once

#include <string>

#include "core_api/CoreExport.h"
#include "core_api/logger/IDecorator.h"

namespace vantorix::core::logger {

/// Puts the local date and time in front: "2024-05-31T18:04:05.123 text".
class VANTORIX_CORE_EXPORT BasicDecorator : public IDecorator {
public:
    std::string decorate(std::string line) override;
};

}  // namespace vantorix::core::logger
