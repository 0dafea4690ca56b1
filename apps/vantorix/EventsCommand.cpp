#include "apps/vantorix/EventsCommand.h"

#include <map>
#include <vector>

#include <CLI/CLI.hpp>
#include <boost/make_shared.hpp>
#include <fmt/color.h>
#include <nlohmann/json.hpp>

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/EventRecorder.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/Progress.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;
using core::event::Event;
using Events = std::vector<Event>;

Events eventsOf(const std::string& file, const Console& console) {
    const Progress progress(console, "reading " + file);
    const auto recorder = boost::make_shared<EventRecorder>();
    const LoadedModel model(file, recorder);
    return recorder->getEvents();
}

/// In order of the names.
std::map<std::string, std::size_t> countsOf(const Events& events) {
    std::map<std::string, std::size_t> counts;
    for (const auto& event : events) ++counts[event.getEventType().getName()];
    return counts;
}

std::string payloadOf(const Event& event) { return event.getEventData().toString(); }

/// One event at a time: a large model announces millions.
void writeJson(const std::string& file, const Events& events, const Console& console) {
    console.write("{\n  \"file\": " + jsonText(file, -1) + ",\n  \"events\": [");
    const char* separator = "\n    ";
    for (const auto& event : events) {
        const Json json = {{"name", event.getEventType().getName()}, {"data", payloadOf(event)}};
        console.write(separator + jsonText(json, -1));
        separator = ",\n    ";
    }
    console.write("\n  ],\n  \"counts\": " + jsonText(Json(countsOf(events)), -1) + "\n}\n");
}

void writeText(const Events& events, const Console& console) {
    const auto nameStyle = fmt::fg(fmt::terminal_color::green);
    std::size_t number = 0;
    for (const auto& event : events) {
        const auto name = fmt::format("{:<24}", printable(event.getEventType().getName()));
        console.write(fmt::format("{:>7}  {}  {}\n", ++number, console.paint(nameStyle, name),
                                  printable(payloadOf(event))));
    }
    console.write("\n" + console.paint(fmt::emphasis::bold, "Counts") + "\n");
    for (const auto& [name, count] : countsOf(events)) {
        console.write(fmt::format("{:>7}  {}\n", count, console.paint(nameStyle, printable(name))));
    }
}

}  // namespace

void EventsCommand::declare(CLI::App& app) {
    declareModel(app, file_);
    declareJson(app, json_);
    declareExamples(app,
                    {"vantorix events robot.glb", "vantorix events robot.glb | grep NodeNewChild",
                     "vantorix events --json robot.glb | jq .counts"});
}

ExitCode EventsCommand::run(Console& console) {
    const Events events = eventsOf(file_, console);
    if (json_) {
        writeJson(file_, events, console);
    } else {
        writeText(events, console);
    }
    return DONE;
}

}  // namespace vantorix::apps::cli
