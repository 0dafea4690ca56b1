#include "apps/vantorix/Progress.h"

#include <boost/chrono.hpp>
#include <fmt/format.h>

#include "apps/vantorix/Console.h"
#include "apps/vantorix/PrintableText.h"

namespace vantorix::apps::cli {
namespace {

constexpr int firstShown = 400;  // Milliseconds.
constexpr int interval = 120;
constexpr const char* eraseLine = "\r\x1b[K";

}  // namespace

Progress::Progress(const Console& console, const std::string& work) : work_(printable(work)) {
    if (console.isWatched()) thread_ = boost::thread([this] { show(); });
}

Progress::~Progress() {
    if (!thread_.joinable()) return;
    {
        const boost::lock_guard<boost::mutex> lock(mutex_);
        isOver_ = true;
    }
    ended_.notify_all();
    thread_.join();
}

void Progress::show() {
    boost::unique_lock<boost::mutex> lock(mutex_);
    const auto isOver = [this] { return isOver_; };
    const auto start = boost::chrono::steady_clock::now();
    if (ended_.wait_for(lock, boost::chrono::milliseconds(firstShown), isOver)) return;
    do {
        const auto passed = boost::chrono::steady_clock::now() - start;
        const auto seconds = boost::chrono::duration<double>(passed).count();
        fmt::print(stderr, "{}{} ... {:.1f} s", eraseLine, work_, seconds);
    } while (!ended_.wait_for(lock, boost::chrono::milliseconds(interval), isOver));
    fmt::print(stderr, "{}", eraseLine);
}

}  // namespace vantorix::apps::cli
