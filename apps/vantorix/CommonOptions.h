#pragma once

#include <string>
#include <vector>

#include <boost/function.hpp>

#include "apps/vantorix/ExitCode.h"

namespace CLI {
class App;
}

namespace vantorix::apps::cli {

class Console;

/// Declares the positional argument MODEL... of commands that take any number of models.
void declareModels(CLI::App& app, std::vector<std::string>& files);

/// Declares MODEL of commands that take one.
void declareModel(CLI::App& app, std::string& file);

void declareJson(CLI::App& app, bool& json);

/// Sets what follows the options in the command's help: examples, then @p remarks, if any.
void declareExamples(CLI::App& app, const std::vector<std::string>& examples,
                     const std::string& remarks = "");

/// Calls @p work for each file. A file that fails is reported and the rest goes on.
/// @return the code of the first failure, or DONE.
ExitCode forEachFile(const std::vector<std::string>& files, const Console& console,
                     const boost::function<void(const std::string& file)>& work);

}  // namespace vantorix::apps::cli
