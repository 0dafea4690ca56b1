#pragma once

#include <map>
#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::logger {

class FileWriter;

/// Hands out the file writers of the process. Safe on any thread.
class VANTORIX_CORE_EXPORT FileWriterFactory {
public:
    /// Lives until the process ends; never null.
    static FileWriterFactory* getInstance();

    /// The one writer for @p fileName, shared by all who ask for the same name.
    boost::shared_ptr<FileWriter> getFileWriter(std::string fileName);

    FileWriterFactory(const FileWriterFactory&) = delete;
    FileWriterFactory& operator=(const FileWriterFactory&) = delete;

private:
    FileWriterFactory();

    boost::mutex mutex_;
    std::map<std::string, boost::shared_ptr<FileWriter>> writers_;
};

}  // namespace vantorix::core::logger
