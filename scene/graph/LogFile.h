#pragma once

#include <string>

namespace vantorix::core::logger {
class Logger;
}

namespace vantorix::scene {

/// Lets @p logger write into the file that the whole process shares under @p fileName.
void writeToFile(core::logger::Logger& logger, const std::string& fileName);

/// Lets @p logger write to the console, too.
void writeToConsole(core::logger::Logger& logger);

}  // namespace vantorix::scene
