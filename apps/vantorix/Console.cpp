#include "apps/vantorix/Console.h"

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <unistd.h>

#include "apps/vantorix/Failure.h"

namespace vantorix::apps::cli {
namespace {

bool forbidsColour() {
    const char* const noColour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return (noColour && *noColour) || (terminal && std::strcmp(terminal, "dumb") == 0);
}

bool isUtf8Locale() {
    std::setlocale(LC_CTYPE, "");
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

[[noreturn]] void failToWrite() {
    throw Failure(FILE_REFUSED, std::string("standard output: ") + std::strerror(errno));
}

}  // namespace

Console::Console()
    : colour_(isatty(STDOUT_FILENO) && !forbidsColour()),
      lineDrawing_(isatty(STDOUT_FILENO) && isUtf8Locale()),
      watched_(isatty(STDERR_FILENO)) {}

std::string Console::paint(const fmt::text_style& style, const std::string& text) const {
    return colour_ ? fmt::format(style, "{}", text) : text;
}

void Console::write(const std::string& text) const {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) failToWrite();
}

void Console::flush() const {
    if (std::fflush(stdout) != 0) failToWrite();
}

void Console::warn(const std::string& line) const {
    fmt::print(stderr, "vantorix: warning: {}\n", line);
}

void Console::fail(const std::string& line) const { fmt::print(stderr, "vantorix: {}\n", line); }

}  // namespace vantorix::apps::cli
