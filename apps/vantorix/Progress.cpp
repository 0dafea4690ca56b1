#include "apps/vantorix/Progress.h"

#include <chrono>

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
    if (console.isWatched()) thread_ = std::thread([this] { show(); });
}

Progress::~Progress() {
    if (!thread_.joinable()) return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        isOver_ = true;
    }
    ended_.notify_all();
    thread_.join();
}

void Progress::show() {
    std::unique_lock<std::mutex> lock(mutex_);
    const auto isOver = [this] { return isOver_; };
    const auto start = std::chrono::steady_clock::now();
    if (ended_.wait_for(lock, std::chrono::milliseconds(firstShown), isOver)) return;
    do {
        const auto passed = std::chrono::steady_clock::now() - start;
        const auto seconds = std::chrono::duration<double>(passed).count();
        fmt::print(stderr, "{}{} ... {:.1f} s", eraseLine, work_, seconds);
    } while (!ended_.wait_for(lock, std::chrono::milliseconds(interval), isOver));
    fmt::print(stderr, "{}", eraseLine);
}

}  // namespace vantorix::apps::cli
