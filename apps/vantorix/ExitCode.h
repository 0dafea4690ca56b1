#pragma once

namespace vantorix::apps::cli {

/// How the program ends.
enum ExitCode {
    DONE = 0,
    ANSWER_NO = 1,     ///< A check or a comparison failed.
    WRONG_USE = 2,     ///< The command line makes no sense.
    FILE_REFUSED = 3,  ///< A file cannot be read, is refused, or cannot be written.
    LIMIT_MET = 4
};

}  // namespace vantorix::apps::cli
