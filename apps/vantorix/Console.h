#pragma once

#include <string>

#include <fmt/color.h>

namespace vantorix::apps::cli {

/// The terminal, file or pipe at both ends of the program. Results go to standard output, all
/// else to standard error.
class Console {
public:
    /// Colour and line drawing only where a person looks: on a terminal without NO_COLOR, and
    /// with a UTF-8 locale for line drawing.
    Console();

    bool usesColour() const { return colour_; }
    bool usesLineDrawing() const { return lineDrawing_; }
    bool isWatched() const { return watched_; }  ///< Standard error is a terminal.

    /// @p text, in @p style where colour is used.
    std::string paint(const fmt::text_style& style, const std::string& text) const;

    /// @throws Failure when standard output takes no more.
    void write(const std::string& text) const;
    void flush() const;

    /// One line on standard error, behind the program's name.
    void warn(const std::string& line) const;
    void fail(const std::string& line) const;

private:
    bool colour_;
    bool lineDrawing_;
    bool watched_;
};

}  // namespace vantorix::apps::cli
