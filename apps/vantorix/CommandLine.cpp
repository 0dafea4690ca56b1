#include "apps/vantorix/CommandLine.h"

#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <vector>

#include <CLI/CLI.hpp>

#include "core_api/logger/Logger.h"

#include "apps/vantorix/CheckCommand.h"
#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/DiffCommand.h"
#include "apps/vantorix/DumpCommand.h"
#include "apps/vantorix/EventsCommand.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/InfoCommand.h"
#include "apps/vantorix/JournalCommand.h"
#include "apps/vantorix/KeysCommand.h"
#include "apps/vantorix/MergeCommand.h"
#include "apps/vantorix/MorphCommand.h"
#include "apps/vantorix/NormalsCommand.h"
#include "apps/vantorix/PickCommand.h"
#include "apps/vantorix/PlayCommand.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/RenderCommand.h"
#include "apps/vantorix/SubdivideCommand.h"

namespace vantorix::apps::cli {
namespace {

using Commands = std::vector<std::unique_ptr<Command>>;

Commands makeCommands() {
    Commands commands;
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<CheckCommand>());
    commands.push_back(std::make_unique<RenderCommand>());
    commands.push_back(std::make_unique<EventsCommand>());
    commands.push_back(std::make_unique<JournalCommand>());
    commands.push_back(std::make_unique<DumpCommand>());
    commands.push_back(std::make_unique<KeysCommand>());
    commands.push_back(std::make_unique<PlayCommand>());
    commands.push_back(std::make_unique<NormalsCommand>());
    commands.push_back(std::make_unique<SubdivideCommand>());
    commands.push_back(std::make_unique<PickCommand>());
    commands.push_back(std::make_unique<MergeCommand>());
    commands.push_back(std::make_unique<MorphCommand>());
    commands.push_back(std::make_unique<DiffCommand>());
    return commands;
}

/// The program's command line: global options, and one subcommand per command.
class CommandLine {
public:
    CommandLine()
        : app_("Reads 3D models into a scene, tells what they hold and draws them."),
          commands_(makeCommands()) {
        app_.name("vantorix");
        app_.set_version_flag("--version", "vantorix " VANTORIX_VERSION);
        app_.require_subcommand(1);
        declareExamples(
            app_,
            {"vantorix info robot.glb", "vantorix render robot.glb -o robot.png",
             "vantorix render --help"},
            "Exit codes: 0 done, 1 the answer is 'no', 2 wrong use, 3 a file that cannot "
            "be read\nor written or is refused, 4 a limit was met.");
        for (const auto& command : commands_) declare(*command);
    }

    ExitCode run(int argc, char** argv, Console& console) {
        try {
            app_.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return answer(error, console);
        }
        core::logger::Logger::active = log_;
        const ExitCode code = chosen().run(console);
        console.flush();
        return code;
    }

private:
    void declare(Command& command) {
        auto* const app = app_.add_subcommand(command.getName(), command.getSummary());
        app->add_flag("--log", log_, "Let the library write its log files into this folder");
        command.declare(*app);
    }

    Command& chosen() const {
        const std::string name = app_.get_subcommands().front()->get_name();
        for (const auto& command : commands_) {
            if (name == command->getName()) return *command;
        }
        return *commands_.front();
    }

    /// Requests for help and version arrive as errors, too.
    ExitCode answer(const CLI::ParseError& error, const Console& console) {
        if (error.get_exit_code() == 0) {
            app_.exit(error);
            console.flush();
            return DONE;
        }
        const auto parsed = app_.get_subcommands();
        const std::string command = parsed.empty() ? "" : " " + parsed.front()->get_name();
        console.fail(printable(error.what()) + "; see vantorix" + command + " --help");
        return WRONG_USE;
    }

    CLI::App app_;
    Commands commands_;
    bool log_ = false;
};

}  // namespace

int runCommandLine(int argc, char** argv) {
    core::logger::Logger::active = false;
    // Drivers report their failures through SDL; what they print themselves is noise.
    ::setenv("EGL_LOG_LEVEL", "fatal", 0);
    Console console;
    try {
        return CommandLine().run(argc, argv, console);
    } catch (const Failure& failure) {
        console.fail(failure.what());
        return failure.getCode();
    } catch (const std::bad_alloc&) {
        console.fail("not enough memory");
        return LIMIT_MET;
    } catch (const std::exception& error) {
        console.fail(printable(error.what()));
        return FILE_REFUSED;
    }
}

}  // namespace vantorix::apps::cli
