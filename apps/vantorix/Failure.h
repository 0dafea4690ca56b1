#pragma once

#include <stdexcept>
#include <string>

#include "apps/vantorix/ExitCode.h"

namespace vantorix::apps::cli {

/// Ends a command, or its work on one model. The text is one line that names the file, if there
/// is one, and the reason.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& line) : std::runtime_error(line), code_(code) {}

    ExitCode getCode() const { return code_; }

private:
    ExitCode code_;
};

}  // namespace vantorix::apps::cli
