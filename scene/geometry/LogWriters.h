#pragma once

#include <string>

namespace vantorix::core::logger {
class Logger;
}

namespace vantorix::scene {

/// Lets @p logger write decorated lines to the process's writer for @p fileName.
void addFileWriter(core::logger::Logger& logger, const std::string& fileName);

/// Lets @p logger write decorated lines to the console. The writer is shared: there can be a
/// logger per mesh primitive.
void addConsoleWriter(core::logger::Logger& logger);

}  // namespace vantorix::scene
