#pragma once

#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::logger {

class IDecorator;

/// Where log lines go. A writer may be shared by loggers on several threads.
class VANTORIX_CORE_EXPORT IWriter {
public:
    /// Writes one line; @p line has no line end.
    virtual void write(std::string line) = 0;
    virtual void flush() = 0;

    /// Replaces the decorator. Returns false, changing nothing, when @p decorator is empty.
    virtual bool setDecorator(boost::shared_ptr<IDecorator> decorator) = 0;
    virtual ~IWriter();
};

}  // namespace vantorix::core::logger
