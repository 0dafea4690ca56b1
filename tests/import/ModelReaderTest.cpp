#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "apps/import/ImportError.h"
#include "apps/import/ModelReader.h"
#include "tests/support/TemporaryFolder.h"

using namespace vantorix::apps::import;
using namespace std::chrono_literals;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool memoryIsLimited = false;
#else
constexpr bool memoryIsLimited = true;
#endif

std::string beside(const std::string& program) {
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / program).string();
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

/// Reads files whose names tell the worker how to misbehave. Whatever it does, no child and no
/// descriptor stays.
struct MisbehavingWorker : ::testing::Test {
    void SetUp() override {
        limits.wallTime = 20s;
        limits.memoryBytes = std::uint64_t{256} << 20;
        limits.answerBytes = 10000000;
    }
    void TearDown() override {
        EXPECT_EQ(openDescriptors(), descriptorsBefore);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    /// The reason, after "limit " or "refused ", or "read".
    std::string outcome(const std::string& behaviour) {
        try {
            ModelReader({limits, beside("vantorix-import-worker-double")})
                .read(folder.write(behaviour, "x"));
            return "read";
        } catch (const LimitError& error) {
            met = error.limit();
            return std::string("limit ") + error.what();
        } catch (const RefusedError& error) {
            return std::string("refused ") + error.what();
        }
    }

    vantorix::test::TemporaryFolder folder;
    ImportLimits limits;
    LimitMet met;
    std::size_t descriptorsBefore = openDescriptors();
};

TEST_F(MisbehavingWorker, ACrashIsAReason) {
    EXPECT_EQ(outcome("sound"), "read");
    EXPECT_EQ(outcome("crash"), "refused the importer crashed (signal SIGSEGV)");
    EXPECT_EQ(outcome("abort"), "refused the importer crashed (signal SIGABRT)");
    EXPECT_EQ(outcome("crash_after_answer"), "refused the importer crashed (signal SIGBUS)");
    EXPECT_EQ(outcome("exit"), "refused the importer ended early (exit code 7)");
}

TEST_F(MisbehavingWorker, ABrokenAnswerIsRefused) {
    EXPECT_EQ(outcome("silent"), "refused the import worker gave no answer");
    EXPECT_EQ(outcome("garbage"), "refused the import worker's answer is cut short");
    EXPECT_EQ(outcome("cut").substr(0, 38), "refused the import worker's answer is ");
    EXPECT_EQ(outcome("nested"), "refused the import worker's answer is no sound document");
}

TEST_F(MisbehavingWorker, AHangEndsAtTheDeadline) {
    limits.wallTime = 300ms;
    for (const char* const behaviour : {"hang", "hang_after_answer", "spin"}) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(outcome(behaviour), "limit took longer than 0.3 s") << behaviour;
        EXPECT_GE(std::chrono::steady_clock::now() - start, 300ms);
        EXPECT_EQ(met.name, "time");
        EXPECT_EQ(met.allowed, 0.3);
    }
}

TEST_F(MisbehavingWorker, ResourcesAreLimited) {
    limits.cpuTime = 1s;
    EXPECT_EQ(outcome("spin"), "limit took longer than 1 s of processor time");
    EXPECT_EQ(outcome("endless").substr(0, 9), "limit has");
    EXPECT_EQ(met.allowed, 1e7);
    EXPECT_GT(met.met, met.allowed);
    if (!memoryIsLimited) return;
    EXPECT_EQ(outcome("writes"), "refused the importer ended early (exit code 11)");
    EXPECT_EQ(outcome("memory"), "limit needed more than 256 MiB of memory");
}

TEST_F(MisbehavingWorker, SeesNothingOfThisProcess) {
    // Standard input and outputs, and the socket.
    EXPECT_EQ(outcome("descriptors"), "refused the importer ended early (exit code 4)");
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    const std::string printing = outcome("prints");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(printing, "read");
}

TEST_F(MisbehavingWorker, FilesThatCannotBeReadNeedNoWorker) {
    const auto reason = [this](const std::string& file) -> std::string {
        try {
            ModelReader({limits, "/nowhere/worker"}).read(file);
            return "read";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    };
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    limits.fileBytes = 3;
    EXPECT_EQ(reason(folder.path("none")), "No such file or directory");
    EXPECT_EQ(reason(folder.path()), "is a folder");
    EXPECT_EQ(reason(folder.path("pipe")), "is no regular file");
    EXPECT_EQ(reason(folder.write("empty", "")), "is empty");
    EXPECT_EQ(reason(folder.write("large", "1234")), "has 4 bytes, 3 are allowed");
    EXPECT_EQ(reason(folder.write("small", "123")),
              "the import worker /nowhere/worker cannot be run");
}
