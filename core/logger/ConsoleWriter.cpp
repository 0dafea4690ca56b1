#include "core_api/logger/ConsoleWriter.h"

#include <iostream>
#include <utility>

#include <boost/thread/lock_guard.hpp>

#include "core/logger/DecoratedLine.h"

namespace vantorix::core::logger {
namespace {

boost::mutex& consoleMutex() {
    static auto* const mutex = new boost::mutex;  // Never destroyed: statics may log at exit.
    return *mutex;
}

}  // namespace

ConsoleWriter::ConsoleWriter() = default;

ConsoleWriter::~ConsoleWriter() = default;

void ConsoleWriter::write(std::string line) {
    const auto text = decoratedLine(mutex_, decorator_, std::move(line));
    const boost::lock_guard<boost::mutex> lock(consoleMutex());
    std::clog.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void ConsoleWriter::flush() {
    const boost::lock_guard<boost::mutex> lock(consoleMutex());
    std::clog.flush();
}

bool ConsoleWriter::setDecorator(boost::shared_ptr<IDecorator> decorator) {
    return replaceDecorator(mutex_, decorator_, std::move(decorator));
}

}  // namespace vantorix::core::logger
