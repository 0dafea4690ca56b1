#pragma once

#include <string>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

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
    boost::mutex mutex_;
    boost::condition_variable ended_;
    bool isOver_ = false;
    boost::thread thread_;
};

}  // namespace vantorix::apps::cli
