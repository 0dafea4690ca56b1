#pragma once

#include "apps/vantorix/ExitCode.h"

namespace CLI {  // NOLINT(readability-identifier-naming): not our name.
class App;
}

namespace vantorix::apps::cli {

class Console;

/// One command of the program. It outlives the parsing of the command line.
class Command {
public:
    virtual ~Command() = default;

    virtual const char* getName() const = 0;
    virtual const char* getSummary() const = 0;

    /// Declares arguments, options and examples; parsing fills fields of this object.
    virtual void declare(CLI::App& app) = 0;

    /// @throws Failure
    virtual ExitCode run(Console& console) = 0;
};

}  // namespace vantorix::apps::cli
