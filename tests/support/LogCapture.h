#pragma once

#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "core_api/logger/BasicDecorator.h"
#include "core_api/logger/FileWriter.h"
#include "core_api/logger/FileWriterFactory.h"
#include "core_api/logger/IDecorator.h"

namespace vantorix::test {

/// Records the lines that scenes and geometry managers log while it stands. A scene that is made
/// meanwhile ends the recording: it decorates the shared files anew.
class LogCapture {
public:
    LogCapture() { decorateFiles(recorder_); }
    ~LogCapture() { decorateFiles(boost::make_shared<core::logger::BasicDecorator>()); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<std::string> lines() const {
        const boost::lock_guard<boost::mutex> lock(recorder_->mutex);
        return recorder_->lines;
    }

private:
    struct Recorder : core::logger::IDecorator {
        std::string decorate(std::string line) override {
            const boost::lock_guard<boost::mutex> lock(mutex);
            lines.push_back(line);
            return line;
        }
        mutable boost::mutex mutex;
        std::vector<std::string> lines;
    };

    static void decorateFiles(const boost::shared_ptr<core::logger::IDecorator>& decorator) {
        auto& files = *core::logger::FileWriterFactory::getInstance();
        for (const auto* name : {"SceneManager.log", "GeometryManager.log"}) {
            files.getFileWriter(name)->setDecorator(decorator);
        }
    }

    boost::shared_ptr<Recorder> recorder_ = boost::make_shared<Recorder>();
};

}  // namespace vantorix::test
