#include "core_api/logger/FileWriter.h"

#include <utility>

#include <boost/thread/lock_guard.hpp>

#include "core/logger/DecoratedLine.h"

namespace vantorix::core::logger {

FileWriter::FileWriter(std::string fileName) : fileName_(std::move(fileName)), file_(nullptr) {}

FileWriter::~FileWriter() {
    if (file_) std::fclose(file_);
}

void FileWriter::write(std::string line) {
    const auto text = decoratedLine(mutex_, decorator_, std::move(line));
    const boost::lock_guard<boost::mutex> lock(mutex_);
    if (open()) std::fwrite(text.data(), 1, text.size(), file_);
}

void FileWriter::flush() {
    const boost::lock_guard<boost::mutex> lock(mutex_);
    if (file_) std::fflush(file_);
}

bool FileWriter::setDecorator(boost::shared_ptr<IDecorator> decorator) {
    return replaceDecorator(mutex_, decorator_, std::move(decorator));
}

bool FileWriter::open() {
    if (file_) return true;
    const auto now = std::chrono::steady_clock::now();
    if (now < nextAttempt_) return false;
    file_ = std::fopen(fileName_.c_str(), "ab");
    nextAttempt_ = now + std::chrono::seconds(1);
    // Unbuffered: a line is one write to the end of the file, whole among several processes.
    if (file_) std::setvbuf(file_, nullptr, _IONBF, 0);
    return file_ != nullptr;
}

}  // namespace vantorix::core::logger
