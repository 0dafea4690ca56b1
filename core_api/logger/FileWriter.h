#pragma once

#include <chrono>
#include <cstdio>
#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/CoreExport.h"
#include "core_api/logger/IWriter.h"

namespace vantorix::core::logger {

/// Appends to a file, which is opened at the first line and flushed after each.
///
/// A line that cannot be written is lost silently. When the file cannot be opened, the next
/// attempt is made with the first line that comes a second later or more.
class VANTORIX_CORE_EXPORT FileWriter : public IWriter {
public:
    explicit FileWriter(std::string fileName);
    ~FileWriter() override;
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    void write(std::string line) override;
    void flush() override;
    bool setDecorator(boost::shared_ptr<IDecorator> decorator) override;

private:
    bool open();

    const std::string fileName_;
    boost::mutex mutex_;
    boost::shared_ptr<IDecorator> decorator_;
    std::FILE* file_;
    std::chrono::steady_clock::time_point nextAttempt_;
};

}  // namespace vantorix::core::logger
