#pragma once

#include <atomic>
#include <sstream>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::logger {

class IWriter;

/// Passes log lines to its writers, in the order in which they were added.
///
/// Logging never fails towards the caller: what a writer throws is dropped. Safe on any thread;
/// lines never mix. What a writer logs into the logger that it is writing for is dropped.
class VANTORIX_CORE_EXPORT Logger {
public:
    Logger();
    ~Logger();
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// Switches all logging of the process on (at first) or off.
    static std::atomic<bool> active;

    /// Returns false when @p writer is empty.
    bool addWriter(boost::shared_ptr<IWriter> writer);

    /// Switches this logger on (at first) or off.
    void setEnabled(bool enabled) { enabled_ = enabled; }
    bool isEnabled() const { return enabled_; }

    /// Writes @p value, which can be anything that a stream takes, as one line.
    template <class T>
    Logger& operator<<(const T& value) {
        if (!active || !enabled_) return *this;
        const boost::lock_guard<boost::recursive_mutex> lock(mutex_);
        try {
            writeLine(textOf(value));
        } catch (...) {
            // A value that cannot be formatted is dropped.
        }
        return *this;
    }

private:
    /// Most lines are strings, which need no stream.
    static const std::string& textOf(const std::string& value) { return value; }
    template <class T>
    static std::string textOf(const T& value) {
        std::ostringstream text;
        text << value;
        return text.str();
    }

    void writeLine(const std::string& line);

    boost::recursive_mutex mutex_;  // Recursive: a writer or a formatted value may log itself.
    std::vector<boost::shared_ptr<IWriter>> writers_;
    std::atomic<bool> enabled_;
    bool writing_;
};

}  // namespace vantorix::core::logger
