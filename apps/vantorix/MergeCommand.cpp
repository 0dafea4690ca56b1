#include "apps/vantorix/MergeCommand.h"

#include <charconv>
#include <iterator>
#include <map>

#include <CLI/CLI.hpp>
#include <boost/shared_ptr.hpp>
#include <fmt/color.h>
#include <nlohmann/json.hpp>

#include "apps/vantorix/CommonOptions.h"
#include "apps/vantorix/Console.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/ImageFiles.h"
#include "apps/vantorix/JsonText.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/TreeLines.h"
#include "apps/vantorix/TreeSummary.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr int mostOptions = 0x3f;

struct NamedOption {
    const char* flag;
    int bit;
    const char* help;
};

constexpr NamedOption namedOptions[] = {
    {"--discard-geometries", 0x01, "Discard geometries whose ID is taken"},
    {"--discard-materials", 0x02, "Discard materials whose ID is taken by one of the same effect"},
    {"--discard-images", 0x04, "Discard images whose ID is taken"},
    {"--discard-layers", 0x08, "Discard layers whose name is taken"},
    {"--discard-nodes", 0x10, "Discard nodes whose ID is taken, and all below them"},
    {"--merge-nodes", 0x20, "Merge nodes into children with the same ID"}};

/// 0 to 63, decimal or behind "0x"; -1 for anything else.
int parseBits(const std::string& text) {
    const bool isHex = text.rfind("0x", 0) == 0;
    const char* const end = text.data() + text.size();
    int bits = -1;
    const auto parsed = std::from_chars(text.data() + (isHex ? 2 : 0), end, bits, isHex ? 16 : 10);
    const bool isWhole = parsed.ec == std::errc() && parsed.ptr == end;
    return isWhole && bits >= 0 && bits <= mostOptions ? bits : -1;
}

/// How many items met each fate, in words.
std::string countFates(const std::vector<ItemFate>& items) {
    std::map<ItemFate::Kind, std::size_t> counts;
    for (const auto& item : items) ++counts[item.kind];
    std::string text;
    for (const auto& [kind, count] : counts) {
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, fateName(kind));
    }
    return text.empty() ? "none" : text;
}

Json fatesJson(const std::vector<ItemFate>& items) {
    Json list = Json::array();
    for (const auto& item : items) {
        Json json = {{"id", item.id}, {"fate", fateName(item.kind)}};
        if (!item.newId.empty()) json["newId"] = item.newId;
        list.push_back(std::move(json));
    }
    return list;
}

/// What a merge does not take along.
Counts countLeftBehind(const std::vector<NodeSummary>& nodes) {
    std::size_t cameras = 0, lights = 0, controllers = 0;
    for (const auto& node : nodes) {
        cameras += node.cameras.size();
        lights += node.lights.size();
        for (const auto& instance : node.instances) controllers += !instance.controllerId.empty();
    }
    return {{"cameras", cameras}, {"lights", lights}, {"controllers", controllers}};
}

boost::shared_ptr<scene::Node> findParent(const LoadedModel& model, const std::string& wanted) {
    auto& scene = model.getScene();
    if (wanted.empty()) return scene.getRoot();
    const auto byID = scene.getNodeByID(wanted);
    const auto found = byID ? byID : scene.getNodeByName(wanted);
    if (found) return found;
    throw Failure(WRONG_USE, printable(model.getFile() + ": there is no node \"" + wanted + "\""));
}

/// The import puts a root above the nodes of a file. Above a single one it says nothing, and would
/// keep that node from meeting its namesake.
void dropBareRoot(scene::SceneManager& scene) {
    const auto root = scene.getRoot();
    if (root->getChildCount() != 1 || root->getInstanceGeometryCount() > 0) return;
    if (root->getTransformations() == Eigen::Matrix4f::Identity()) {
        scene.setRoot(root->getChildNode(0));
    }
}

}  // namespace

void MergeCommand::declareOptions(CLI::App& app) {
    app.add_option("--into", into_,
                   "ID or name of the node of A that B comes under, the root\n"
                   "if not given")
        ->type_name("NODE");
    app.add_option("--options", optionsText_, "The sum of the flags' bits, 0 to 0x3f")
        ->type_name("BITS");
    for (const auto& option : namedOptions) {
        app.add_flag_callback(
            option.flag, [this, bit = option.bit] { flags_ |= bit; },
            fmt::format("{} (0x{:02x})", option.help, option.bit));
    }
    declareExamples(app,
                    {"vantorix merge room.glb lamp.glb",
                     "vantorix merge room.glb lamp.glb --into table --render both.png",
                     "vantorix merge a.glb b.glb --discard-materials --merge-nodes --json"},
                    "Whatever has a taken ID is renamed unless it is discarded; an effect of the\n"
                    "same file is always discarded. Cameras, lights and controllers of B do not\n"
                    "come along.");
}

void MergeCommand::check() {
    options_ = parseBits(optionsText_);
    if (options_ < 0) {
        throw Failure(WRONG_USE,
                      "--options: \"" + printable(optionsText_) + "\" is no number from 0 to 0x3f");
    }
    options_ |= flags_;
}

void MergeCommand::change(const LoadedModel& target, const LoadedModel& source) {
    auto& scene = target.getScene();
    into_ = findParent(target, into_)->getID();
    dropBareRoot(source.getScene());
    const MergeReport report(scene, source.getScene());
    scene.mergeSceneManager(source.getScene().shared_from_this(), options_, into_);
    fates_ = report.conclude(options_, into_);
    for (const auto& node : fates_.back().items) {
        if (node.kind == ItemFate::ADDED) newNodes_.insert(node.id);
        if (node.kind == ItemFate::RENAMED) newNodes_.insert(node.newId);
    }
    tree_ = summarizeTree(*scene.getRoot());
    leftBehind_ = countLeftBehind(summarizeTree(*source.getScene().getRoot()));
}

render::ImageSource MergeCommand::imagesAfter(const LoadedModel& target,
                                              const LoadedModel& source) const {
    std::map<std::string, std::string> taken;
    for (const auto& library : fates_) {
        if (library.name != std::string("images")) continue;
        for (const auto& item : library.items) {
            if (item.kind == ItemFate::ADDED) taken.emplace(item.id, item.id);
            if (item.kind == ItemFate::RENAMED) taken.emplace(item.newId, item.id);
        }
    }
    return [taken, own = imagesOf(target.getImport()),
            others = imagesOf(source.getImport())](const std::string& id) {
        const auto found = taken.find(id);
        return found == taken.end() ? own(id) : others(found->second);
    };
}

std::string MergeCommand::reportText(const Console& console) const {
    std::string text = fmt::format(
        "{}\n", console.paint(fmt::emphasis::bold, printable(targetFile() + " + " + sourceFile())));
    const auto out = std::back_inserter(text);
    fmt::format_to(out, "  under      {}\n  options    0x{:02x}\n", printable(into_), options_);
    for (const auto& library : fates_) {
        fmt::format_to(out, "\n{}  {}\n", console.paint(fmt::emphasis::bold, library.name),
                       countFates(library.items));
        for (const auto& item : library.items) {
            fmt::format_to(out, "  {:<9}  {}{}\n", fateName(item.kind), printable(item.id),
                           item.newId.empty() ? "" : " -> " + printable(item.newId));
        }
    }
    fmt::format_to(out, "\n{}\n", console.paint(fmt::emphasis::bold, "left behind"));
    for (const auto& [kind, count] : leftBehind_) fmt::format_to(out, "  {} {}\n", kind, count);
    return text + treeText(console);
}

std::string MergeCommand::treeText(const Console& console) const {
    std::vector<std::size_t> depths;
    for (const auto& node : tree_) depths.push_back(node.depth);
    const auto prefixes = treePrefixes(depths, console.usesLineDrawing());
    std::string text = "\n" + console.paint(fmt::emphasis::bold, "tree") + "\n";
    for (std::size_t i = 0; i < tree_.size(); ++i) {
        fmt::format_to(std::back_inserter(text), "  {}{}  {}{}\n", prefixes[i],
                       printable(tree_[i].id), tree_[i].kind(),
                       newNodes_.count(tree_[i].id) > 0 ? "  new" : "");
    }
    return text;
}

std::string MergeCommand::reportJson() const {
    Json json = {{"target", targetFile()},
                 {"source", sourceFile()},
                 {"under", into_},
                 {"options", options_}};
    for (const auto& library : fates_) json[library.name] = fatesJson(library.items);
    for (const auto& [kind, count] : leftBehind_) json["leftBehind"][kind] = count;
    json["tree"] = Json::array();
    for (const auto& node : tree_) {
        json["tree"].push_back({{"id", node.id},
                                {"parent", node.parent < 0 ? Json() : Json(node.parent)},
                                {"kind", node.kind()},
                                {"new", newNodes_.count(node.id) > 0}});
    }
    return jsonText(json, 2) + "\n";
}

}  // namespace vantorix::apps::cli
