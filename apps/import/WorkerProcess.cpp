#include "apps/import/WorkerProcess.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>

#include "apps/import/ImportError.h"
#include "apps/import/WorkerMessages.h"

namespace vantorix::apps::import {
namespace {

// Sanitizers reserve terabytes of address space before main(), some in files without a name, and
// could not start under these limits.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool memoryAndFilesCanBeLimited = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool memoryAndFilesCanBeLimited = false;
#else
constexpr bool memoryAndFilesCanBeLimited = true;
#endif
#else
constexpr bool memoryAndFilesCanBeLimited = true;
#endif

constexpr std::chrono::microseconds longestPause{5000};
constexpr std::size_t readSize = std::size_t{1} << 18;

[[noreturn]] void refuse(const std::string& what, int error) {
    throw RefusedError(what + ": " + std::strerror(error));
}

/// The descriptors and signal settings with which the child starts.
class SpawnSettings {
public:
    explicit SpawnSettings(int childSocket) {
        posix_spawn_file_actions_init(&files_);
        posix_spawn_file_actions_addopen(&files_, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&files_, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&files_, 2, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_adddup2(&files_, childSocket, workerSocket);
        posix_spawn_file_actions_addclosefrom_np(&files_, workerSocket + 1);

        posix_spawnattr_init(&attributes_);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes_, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&files_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    const posix_spawn_file_actions_t* files() const { return &files_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t files_{};
    posix_spawnattr_t attributes_{};
};

void limitResource(pid_t child, __rlimit_resource resource, std::uint64_t soft,
                   std::uint64_t hard) {
    const rlimit bounds{static_cast<rlim_t>(soft), static_cast<rlim_t>(hard)};
    if (::prlimit(child, resource, &bounds, nullptr) != 0) {
        refuse("cannot limit the import worker", errno);
    }
}

}  // namespace

WorkerProcess::WorkerProcess(const std::string& program, const ImportLimits& limits)
    : limits_(limits), deadline_(Clock::now() + limits.wallTime) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        refuse("cannot reach the import worker", errno);
    }
    socket_ = FileDescriptor(ends[0]);
    // A descriptor that already has the worker's number would stay marked close-on-exec.
    const FileDescriptor childSocket(::fcntl(ends[1], F_DUPFD_CLOEXEC, workerSocket + 1));
    ::close(ends[1]);
    start(program, childSocket);
    try {
        limit();
    } catch (...) {
        kill();
        throw;
    }
}

WorkerProcess::~WorkerProcess() { kill(); }

WorkerOutcome WorkerProcess::run(const std::vector<std::uint8_t>& request) {
    WorkerOutcome outcome;
    send(request);
    if (!receive(outcome) || !waitForEnd(outcome)) kill();
    return outcome;
}

void WorkerProcess::start(const std::string& program, const FileDescriptor& childSocket) {
    const SpawnSettings settings(childSocket.number());
    char* const arguments[] = {const_cast<char*>(program.c_str()), nullptr};
    const int error = ::posix_spawn(&child_, program.c_str(), settings.files(),
                                    settings.attributes(), arguments, environ);
    if (error != 0) {
        child_ = -1;
        refuse("cannot start the import worker " + program, error);
    }
}

void WorkerProcess::limit() {
    const auto seconds =
        static_cast<std::uint64_t>(std::max<std::int64_t>(1, limits_.cpuTime.count()));
    if (memoryAndFilesCanBeLimited) {
        limitResource(child_, RLIMIT_AS, limits_.memoryBytes, limits_.memoryBytes);
        limitResource(child_, RLIMIT_FSIZE, 0, 0);
    }
    limitResource(child_, RLIMIT_CPU, seconds, seconds + 1);
    limitResource(child_, RLIMIT_CORE, 0, 0);
}

void WorkerProcess::send(const std::vector<std::uint8_t>& request) {
    // A request fits into the socket's buffer. If the child is gone already, its end will say why.
    (void)!::send(socket_.number(), request.data(), request.size(), MSG_NOSIGNAL);
    ::shutdown(socket_.number(), SHUT_WR);
}

/// False when the child is to be stopped.
bool WorkerProcess::receive(WorkerOutcome& outcome) {
    auto& answer = outcome.answer;
    for (;;) {
        if (!waitUntilReadable()) {
            outcome.end = WorkerOutcome::TOO_LATE;
            return false;
        }
        const std::size_t size = answer.size();
        answer.resize(size + readSize);
        const ssize_t got = ::recv(socket_.number(), answer.data() + size, readSize, 0);
        answer.resize(size + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got == 0 || (got < 0 && errno != EINTR)) return true;
        if (answer.size() > limits_.answerBytes) {
            outcome.end = WorkerOutcome::TOO_LONG_AN_ANSWER;
            return false;
        }
    }
}

bool WorkerProcess::waitUntilReadable() {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
        if (left.count() <= 0) return false;
        pollfd wanted{socket_.number(), POLLIN, 0};
        const auto wait = static_cast<int>(std::min<std::int64_t>(left.count(), 3600000));
        if (::poll(&wanted, 1, wait) > 0) return true;
    }
}

/// A child that closed its socket is about to end, or pretends to: the deadline still holds.
bool WorkerProcess::waitForEnd(WorkerOutcome& outcome) {
    socket_.close();
    for (std::chrono::microseconds pause{50};; pause = std::min(2 * pause, longestPause)) {
        int status = 0;
        const pid_t ended = ::waitpid(child_, &status, WNOHANG);
        if (ended != 0 && !(ended < 0 && errno == EINTR)) {
            child_ = -1;
            // With SIGCHLD ignored the system reaps the child and nobody can tell how it ended.
            if (ended < 0) return true;
            outcome.end = WIFSIGNALED(status) ? WorkerOutcome::SIGNALLED : WorkerOutcome::EXITED;
            outcome.code = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
            return true;
        }
        if (Clock::now() >= deadline_) {
            outcome.end = WorkerOutcome::TOO_LATE;
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
}

void WorkerProcess::kill() {
    if (child_ < 0) return;
    ::kill(child_, SIGKILL);
    while (::waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
    }
    child_ = -1;
}

}  // namespace vantorix::apps::import
