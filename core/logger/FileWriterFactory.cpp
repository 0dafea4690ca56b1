#include "core_api/logger/FileWriterFactory.h"

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>

#include "core_api/logger/FileWriter.h"

namespace vantorix::core::logger {

FileWriterFactory::FileWriterFactory() = default;

FileWriterFactory* FileWriterFactory::getInstance() {
    static auto* const instance = new FileWriterFactory;  // Never destroyed: statics may log.
    return instance;
}

boost::shared_ptr<FileWriter> FileWriterFactory::getFileWriter(std::string fileName) {
    const boost::lock_guard<boost::mutex> lock(mutex_);
    auto& writer = writers_[fileName];
    if (!writer) writer = boost::make_shared<FileWriter>(fileName);
    return writer;
}

}  // namespace vantorix::core::logger
