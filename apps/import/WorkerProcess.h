#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

#include "apps/import/FileDescriptor.h"
#include "apps/import/ImportLimits.h"

namespace vantorix::apps::import {

/// How a worker ended and what it sent until then.
struct WorkerOutcome {
    enum End { EXITED, SIGNALLED, TOO_LATE, TOO_LONG_AN_ANSWER, UNKNOWN };

    End end = UNKNOWN;
    int code = 0;  ///< Exit code or signal number.
    std::vector<std::uint8_t> answer;
};

/// One run of the worker program: a child with limits on memory, processor time and output,
/// which is stopped when its time is over. The child is gone and reaped, and every descriptor
/// closed, when run() returns or throws.
///
/// The limits stand before the child receives its request. It writes no files and no core, sees
/// nothing of this process but one socket, and its printed output is dropped.
class WorkerProcess {
public:
    /// @throws RefusedError when @p program cannot be started or limited.
    WorkerProcess(const std::string& program, const ImportLimits& limits);
    ~WorkerProcess();

    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// Sends @p request and waits for the end of the answer and of the child. Call it once.
    WorkerOutcome run(const std::vector<std::uint8_t>& request);

private:
    using Clock = std::chrono::steady_clock;

    void start(const std::string& program, const FileDescriptor& childSocket);
    void limit();
    void send(const std::vector<std::uint8_t>& request);
    bool receive(WorkerOutcome& outcome);
    bool waitUntilReadable();
    bool waitForEnd(WorkerOutcome& outcome);
    void kill();

    ImportLimits limits_;
    Clock::time_point deadline_;
    FileDescriptor socket_;
    pid_t child_ = -1;
};

}  // namespace vantorix::apps::import
