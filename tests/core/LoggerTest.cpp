#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/make_shared.hpp>
#include <boost/thread.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core_api/core_api.h"

#include "tests/support/TemporaryFolder.h"

namespace {

using namespace vantorix::core::logger;
using Calls = std::vector<std::string>;

struct RecordingWriter : IWriter {
    void write(std::string line) override { calls.push_back(line); }
    void flush() override { calls.push_back("flush"); }
    bool setDecorator(boost::shared_ptr<IDecorator>) override { return false; }
    Calls calls;
};

struct ThrowingWriter : RecordingWriter {
    void write(std::string) override { throw std::runtime_error("disk"); }
};

struct LoggingWriter : RecordingWriter {
    explicit LoggingWriter(Logger& itsLogger) : logger(itsLogger) {}
    void write(std::string line) override {
        logger << "nested";
        RecordingWriter::write(line);
    }
    Logger& logger;
};

struct Brackets : IDecorator {
    std::string decorate(std::string line) override { return "<" + line + ">"; }
};

/// Counts how often it was formatted.
struct Formatted {
    int& count;
    friend std::ostream& operator<<(std::ostream& out, const Formatted& value) {
        return out << ++value.count;
    }
};

struct LoggerTest : ::testing::Test {
    LoggerTest() { logger.addWriter(writer); }
    ~LoggerTest() override { Logger::active = true; }

    const vantorix::test::TemporaryFolder folder;
    Logger logger;
    boost::shared_ptr<RecordingWriter> writer = boost::make_shared<RecordingWriter>();
};

TEST_F(LoggerTest, EachCallIsOneLineForEachWriterInOrder) {
    EXPECT_TRUE(logger.addWriter(writer));
    EXPECT_FALSE(logger.addWriter(nullptr));
    logger << "[INFO] " << 42 << std::string("s");
    EXPECT_EQ(writer->calls, Calls({"[INFO] ", "flush", "[INFO] ", "flush", "42", "flush", "42",
                                    "flush", "s", "flush", "s", "flush"}));
}

TEST_F(LoggerTest, NothingIsFormattedOrWrittenWhileSwitchedOff) {
    int formatted = 0;
    Logger::active = false;
    logger << Formatted{formatted};
    Logger::active = true;
    logger.setEnabled(false);
    logger << Formatted{formatted};
    EXPECT_EQ(formatted, 0);
    EXPECT_TRUE(writer->calls.empty());
    logger.setEnabled(true);
    logger << Formatted{formatted};
    EXPECT_EQ(writer->calls, Calls({"1", "flush"}));
}

TEST_F(LoggerTest, AFailingWriterDisturbsNobody) {
    Logger own;
    own.addWriter(boost::make_shared<ThrowingWriter>());
    own.addWriter(writer);
    EXPECT_NO_THROW(own << "text");
    EXPECT_EQ(writer->calls, Calls({"text", "flush"}));
}

TEST_F(LoggerTest, WhatAWriterLogsIntoItsOwnLoggerIsDropped) {
    Logger own;
    const auto nested = boost::make_shared<LoggingWriter>(own);
    own.addWriter(nested);
    own << "outer";
    EXPECT_EQ(nested->calls, Calls({"outer", "flush"}));
}

TEST_F(LoggerTest, LinesOfSeveralLoggersReachASharedFileWhole) {
    const auto file = folder.path("shared.log");
    constexpr int lines = 500;
    boost::thread_group threads;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        threads.create_thread([&file, letter] {
            Logger own;
            const auto shared = FileWriterFactory::getInstance()->getFileWriter(file);
            own.addWriter(shared);
            for (int i = 0; i < lines; ++i) {
                shared->setDecorator(boost::make_shared<Brackets>());
                own << std::string(50, letter);
            }
        });
    }
    threads.join_all();

    std::ifstream in(file);
    int count = 0;
    for (std::string line; std::getline(in, line); ++count) {
        ASSERT_EQ(line, "<" + std::string(50, line[1]) + ">");
    }
    EXPECT_EQ(count, 4 * lines);
}

TEST_F(LoggerTest, AFileIsMadeByItsFirstLineAndAppendedTo) {
    const auto file = folder.write("lazy.log", "before\n");
    FileWriter lazy(file);
    FileWriter silent(folder.path("silent.log"));
    lazy.write("after");
    std::ifstream in(file);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "before\nafter\n");
    EXPECT_FALSE(folder.has("silent.log"));
}

TEST_F(LoggerTest, AFolderThatIsMissingOnlyLosesTheLines) {
    FileWriter lost(folder.path("missing/x.log"));
    EXPECT_NO_THROW(lost.write("text"));
    EXPECT_NO_THROW(lost.flush());
    EXPECT_FALSE(folder.has("missing"));
}

TEST_F(LoggerTest, TheFactoryHasOneWriterPerName) {
    auto* const factory = FileWriterFactory::getInstance();
    EXPECT_EQ(factory, FileWriterFactory::getInstance());
    EXPECT_EQ(factory->getFileWriter("a.log"), factory->getFileWriter("a.log"));
    EXPECT_NE(factory->getFileWriter("a.log"), factory->getFileWriter("b.log"));
}

TEST_F(LoggerTest, TheConsoleWriterLeavesStandardOutputAlone) {
    ConsoleWriter console;
    EXPECT_FALSE(console.setDecorator(nullptr));
    EXPECT_TRUE(console.setDecorator(boost::make_shared<BasicDecorator>()));
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    console.write("text");
    console.flush();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    const auto line = ::testing::internal::GetCapturedStderr();
    EXPECT_TRUE(::testing::Matches(::testing::ContainsRegex(
        "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} text\n$"))(line))
        << line;
}

TEST_F(LoggerTest, ADecoratedLineBeginsWithItsTimeInMilliseconds) {
    using boost::posix_time::microsec_clock;
    const auto before = microsec_clock::local_time() - boost::posix_time::milliseconds(1);
    const auto line = BasicDecorator().decorate("text");
    const auto after = microsec_clock::local_time();
    const auto end = line.find(' ');
    ASSERT_EQ(line.substr(end), " text");
    const auto time = boost::posix_time::from_iso_extended_string(line.substr(0, end));
    EXPECT_LT(before, time);
    EXPECT_LE(time, after);
}

}  // namespace
