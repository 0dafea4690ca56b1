#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace vantorix::apps::cli {

class Console;

/// A status line on standard error while this object lives: only when a person watches, and only
/// for work that takes long enough to wonder.
class Progress {
public:
    Progress(const Console& console, const std::string& work);
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    void show();

    std::string work_;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool isOver_ = false;
    std::thread thread_;
};

}  // namespace vantorix::apps::cli
