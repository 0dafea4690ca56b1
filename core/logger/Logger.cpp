#include "core_api/logger/Logger.h"

#include <utility>

#include "core_api/logger/IWriter.h"

namespace vantorix::core::logger {
namespace {

void writeTo(IWriter& writer, const std::string& line) {
    try {
        writer.write(line);
        writer.flush();
    } catch (...) {
        // A broken writer must not disturb the caller or the other writers.
    }
}

}  // namespace

std::atomic<bool> Logger::active{true};

Logger::Logger() : enabled_(true), writing_(false) {}

Logger::~Logger() = default;

bool Logger::addWriter(boost::shared_ptr<IWriter> writer) {
    if (!writer) return false;
    const boost::lock_guard<boost::recursive_mutex> lock(mutex_);
    writers_.push_back(std::move(writer));
    return true;
}

void Logger::writeLine(const std::string& line) {
    if (writing_) return;
    writing_ = true;
    // By position: a writer may add another one.
    for (std::size_t i = 0; i < writers_.size(); ++i) {
        const auto writer = writers_[i];
        writeTo(*writer, line);
    }
    writing_ = false;
}

}  // namespace vantorix::core::logger
