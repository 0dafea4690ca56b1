#include "apps/import/ModelReader.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <signal.h>
#include <string.h>
#include <sys/stat.h>

#include "apps/import/ImportError.h"
#include "apps/import/WorkerLocation.h"
#include "apps/import/WorkerMessages.h"
#include "apps/import/WorkerProcess.h"

namespace vantorix::apps::import {
namespace {

[[noreturn]] void throwTimeLimit(const std::string& name, double allowed) {
    std::array<char, 32> number{};
    std::snprintf(number.data(), number.size(), "%g", allowed);
    throw LimitError({name, "s", allowed, allowed}, std::string("took longer than ") +
                                                        number.data() + " s" +
                                                        (name == "time" ? "" : " of " + name));
}

[[noreturn]] void throwMemoryLimit(const ImportLimits& limits) {
    const std::uint64_t mebibytes = limits.memoryBytes >> 20;
    throw LimitError(
        {"memory", "MiB", static_cast<double>(mebibytes), static_cast<double>(mebibytes)},
        "needed more than " + std::to_string(mebibytes) + " MiB of memory");
}

[[noreturn]] void throwSignal(int signal, const ImportLimits& limits) {
    if (signal == SIGXCPU) {
        throwTimeLimit("processor time", static_cast<double>(limits.cpuTime.count()));
    }
    const char* const name = ::sigabbrev_np(signal);
    throw RefusedError("the importer crashed (signal " +
                       (name ? "SIG" + std::string(name) : std::to_string(signal)) + ")");
}

/// Returns only when the worker ended in order, so that its answer counts.
void requireOrderlyEnd(const WorkerOutcome& outcome, const ImportLimits& limits) {
    if (outcome.end == WorkerOutcome::TOO_LATE) {
        throwTimeLimit("time", static_cast<double>(limits.wallTime.count()) / 1000.0);
    }
    if (outcome.end == WorkerOutcome::TOO_LONG_AN_ANSWER) {
        requireWithin("bytes when read", outcome.answer.size(), limits.answerBytes);
    }
    if (outcome.end == WorkerOutcome::SIGNALLED) throwSignal(outcome.code, limits);
    if (outcome.end != WorkerOutcome::EXITED || outcome.code == 0) return;
    if (outcome.code == workerOutOfMemory) throwMemoryLimit(limits);
    throw RefusedError("the importer ended early (exit code " + std::to_string(outcome.code) + ")");
}

}  // namespace

ModelDocument ModelReader::read(const std::string& file) const {
    checkFile(file);
    const auto& limits = options_.limits;
    WorkerProcess worker(findWorker(options_.worker), limits);
    const WorkerOutcome outcome = worker.run(writeRequest({file, limits, options_.triangulate}));
    requireOrderlyEnd(outcome, limits);

    WorkerAnswer answer = readAnswer(outcome.answer, limits);
    if (answer.status == WorkerAnswer::LIMIT) throw LimitError(answer.limit, answer.reason);
    if (answer.status == WorkerAnswer::REFUSED) throw RefusedError(answer.reason);
    return std::move(answer.document);
}

/// Looks before any process is started; the worker opens the file again under its own checks.
void ModelReader::checkFile(const std::string& file) const {
    struct stat about {};
    if (::stat(file.c_str(), &about) != 0) throw RefusedError(::strerror(errno));
    if (S_ISDIR(about.st_mode)) throw RefusedError("is a folder");
    if (!S_ISREG(about.st_mode)) throw RefusedError("is no regular file");
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (opened.number() < 0) throw RefusedError(::strerror(errno));
    if (about.st_size == 0) throw RefusedError("is empty");
    requireWithin("bytes", static_cast<std::uint64_t>(about.st_size), options_.limits.fileBytes);
}

}  // namespace vantorix::apps::import
