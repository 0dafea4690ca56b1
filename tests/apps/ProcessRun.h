#pragma once

#include <string>

#include "tests/support/TemporaryFolder.h"

namespace vantorix::apps {

/// What a finished process left behind.
struct ProcessRun {
    int exitCode = -1;  ///< -1 when it ended by a signal.
    std::string out;
    std::string err;
};

/// Runs @p shellCommand in @p folder. Standard input is empty.
ProcessRun runShell(const std::string& shellCommand, const test::TemporaryFolder& folder);

}  // namespace vantorix::apps
