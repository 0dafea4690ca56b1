#pragma once

namespace vantorix::apps::cli {

/// Runs the command that the arguments ask for. Never throws; whatever goes wrong ends in one
/// line on standard error.
/// @return an ExitCode.
int runCommandLine(int argc, char** argv);

}  // namespace vantorix::apps::cli
