#pragma once

#include <string>
#include <utility>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/logger/IDecorator.h"

namespace vantorix::core::logger {

/// What a writer puts out for @p line: decorated by the writer's current decorator, if it has one,
/// with a line end. The decorator runs without the lock.
inline std::string decoratedLine(boost::mutex& mutex,
                                 const boost::shared_ptr<IDecorator>& decorator, std::string line) {
    boost::shared_ptr<IDecorator> current;
    {
        const boost::lock_guard<boost::mutex> lock(mutex);
        current = decorator;
    }
    if (current) line = current->decorate(std::move(line));
    return std::move(line += '\n');
}

/// Gives a writer another decorator; false when @p replacement is empty.
inline bool replaceDecorator(boost::mutex& mutex, boost::shared_ptr<IDecorator>& decorator,
                             boost::shared_ptr<IDecorator> replacement) {
    if (!replacement) return false;
    const boost::lock_guard<boost::mutex> lock(mutex);
    decorator.swap(replacement);
    return true;
}

}  // namespace vantorix::core::logger
