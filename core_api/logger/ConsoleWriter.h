#pragma once

#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/CoreExport.h"
#include "core_api/logger/IWriter.h"

namespace vantorix::core::logger {

/// Writes to std::clog, so that standard output is left to a program's results. Lines of several
/// console writers never mix.
class VANTORIX_CORE_EXPORT ConsoleWriter : public IWriter {
public:
    ConsoleWriter();
    ~ConsoleWriter() override;

    void write(std::string line) override;
    void flush() override;
    bool setDecorator(boost::shared_ptr<IDecorator> decorator) override;

private:
    boost::mutex mutex_;
    boost::shared_ptr<IDecorator> decorator_;
};

}  // namespace vantorix::core::logger
