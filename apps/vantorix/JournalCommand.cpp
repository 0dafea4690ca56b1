#include "apps/vantorix/JournalCommand.h"

#include <CLI/CLI.hpp>
#include <boost/make_shared.hpp>
#include <nlohmann/json.hpp>

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/EventRecorder.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/Progress.h"

namespace vantorix::apps::cli {

void JournalCommand::declare(CLI::App& app) {
    declareModel(app, file_);
    declareExamples(app,
                    {"vantorix journal robot.glb > robot.jsonl",
                     "vantorix journal robot.glb | jq -r .event | sort | uniq -c"},
                    R"(Each line is {"number": from 1, "event": name, "data": payload}.)");
}

ExitCode JournalCommand::run(Console& console) {
    const auto recorder = boost::make_shared<EventRecorder>();
    {
        const Progress progress(console, "reading " + file_);
        const LoadedModel model(file_, recorder);
    }
    std::size_t number = 0;
    for (const auto& event : recorder->getEvents()) {
        const nlohmann::ordered_json line = {{"number", ++number},
                                             {"event", event.getEventType().getName()},
                                             {"data", event.getEventData().toString()}};
        console.write(jsonText(line, -1) + "\n");
    }
    return DONE;
}

}  // namespace vantorix::apps::cli
