#pragma once

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "tests/apps/ProcessRun.h"

namespace vantorix::apps {

inline constexpr const char* squareObj =
    "mtllib square.mtl\no Square\nusemtl paint\n"
    "v 0 0 0\nv 2 0 0\nv 2 1 0\nv 0 1 0\nf 1 2 3 4\n";
inline constexpr const char* squareMtl = "newmtl paint\nKd 1 0 0\n";

/// A folder with one sound model, and the program.
struct Program : ::testing::Test {
    Program() {
        folder.write("square.obj", squareObj);
        folder.write("square.mtl", squareMtl);
    }

    ProcessRun run(const std::string& arguments, const std::string& environment = "") const {
        return runShell(environment + " '" VANTORIX_PROGRAM "' " + arguments, folder);
    }

    /// Runs on a terminal of its own; both outputs come as standard output.
    ProcessRun runWatched(const std::string& arguments, const std::string& environment) const {
        return runShell(
            environment + " script -qec \"'" VANTORIX_PROGRAM "' " + arguments + "\" /dev/null",
            folder);
    }

    test::TemporaryFolder folder;
};

inline bool isOneLineWith(const std::string& text, const std::string& part) {
    return std::count(text.begin(), text.end(), '\n') == 1 && text.back() == '\n' &&
           text.find(part) != std::string::npos;
}

inline bool isPlain(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c == '\n' || (c >= ' ' && c < 127); });
}

}  // namespace vantorix::apps
