#include "apps/vantorix/CommonOptions.h"

#include <new>

#include <CLI/CLI.hpp>

#include "apps/vantorix/Console.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/PrintableText.h"

namespace vantorix::apps::cli {

void declareModels(CLI::App& app, std::vector<std::string>& files) {
    app.add_option("MODEL", files, "Model files")->required()->type_name("");
}

void declareModel(CLI::App& app, std::string& file) {
    app.add_option("MODEL", file, "Model file")->required()->type_name("");
}

void declareJson(CLI::App& app, bool& json) {
    app.add_flag("--json", json, "Write JSON for programs instead of text for people");
}

void declareExamples(CLI::App& app, const std::vector<std::string>& examples,
                     const std::string& remarks) {
    std::string footer = "Examples:";
    for (const auto& example : examples) footer += "\n  " + example;
    if (!remarks.empty()) footer += "\n\n" + remarks;
    app.footer(footer);
}

ExitCode forEachFile(const std::vector<std::string>& files, const Console& console,
                     const boost::function<void(const std::string& file)>& work) {
    ExitCode code = DONE;
    for (const auto& file : files) {
        try {
            work(file);
        } catch (const Failure& failure) {
            console.fail(failure.what());
            if (code == DONE) code = failure.getCode();
        } catch (const std::bad_alloc&) {
            console.fail(printable(file) + ": not enough memory");
            if (code == DONE) code = LIMIT_MET;
        }
    }
    return code;
}

}  // namespace vantorix::apps::cli
