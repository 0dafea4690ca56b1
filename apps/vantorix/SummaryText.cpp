#include "apps/vantorix/SummaryText.h"

#include <iterator>

#include <fmt/color.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "apps/vantorix/Console.h"
#include "apps/vantorix/ModelSummary.h"
#include "apps/vantorix/PrintableText.h"
#include "apps/vantorix/TreeLines.h"

namespace vantorix::apps::cli {
namespace {

const auto titleStyle = fmt::emphasis::bold;
const auto faintStyle = fmt::emphasis::faint;
const auto kindStyle = fmt::fg(fmt::terminal_color::cyan);
const auto nameStyle = fmt::fg(fmt::terminal_color::green);

std::string vectorText(const Eigen::Vector3f& v) {
    return fmt::format("({:.5g}, {:.5g}, {:.5g})", v.x(), v.y(), v.z());
}

std::string boxText(const BoxSummary& box) {
    if (!box.isKnown) return "none";
    return fmt::format("{} to {}", vectorText(box.least), vectorText(box.most));
}

std::string countsText(const Counts& counts) {
    std::string text;
    for (const auto& [name, count] : counts) {
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", name, count);
    }
    return text;
}

/// A name behind an ID only where it says more.
std::string named(const std::string& id, const std::string& name) {
    if (name.empty() || name == id) return printable(id);
    return fmt::format("{} \"{}\"", printable(id), printable(name));
}

/// Writes one summary, section by section.
class SummaryWriter {
public:
    SummaryWriter(const ModelSummary& summary, const Console& console)
        : summary_(summary), console_(console) {}

    std::string write() {
        writeDescription();
        writeTree();
        writeLayers();
        writeGeometries();
        writeMaterials();
        writeOthers();
        writeControllers();
        writeNotes();
        return std::move(text_);
    }

private:
    template <class... Parts>
    void line(fmt::format_string<Parts...> format, Parts&&... parts) {
        fmt::format_to(std::back_inserter(text_), format, std::forward<Parts>(parts)...);
        text_ += '\n';
    }

    void section(const std::string& title) { line("\n{}", console_.paint(titleStyle, title)); }

    std::string faint(const std::string& text) const { return console_.paint(faintStyle, text); }

    void writeDescription() {
        line("{}", console_.paint(titleStyle, printable(summary_.file)));
        line("  format     {}", printable(summary_.format));
        line("  scene      {}, {} up, {} m per unit", printable(summary_.name), summary_.upAxis,
             summary_.meterUnit);
        line("  bounds     {}", boxText(summary_.box));
        line("  shown      {}", countsText(summary_.counts));
        line("  libraries  {}", countsText(summary_.libraries));
    }

    void writeTree() {
        section("Tree");
        std::vector<std::size_t> depths;
        for (const auto& node : summary_.nodes) depths.push_back(node.depth);
        const auto prefixes = treePrefixes(depths, console_.usesLineDrawing());
        for (std::size_t i = 0; i < prefixes.size(); ++i) {
            const auto& node = summary_.nodes[i];
            line("  {}{}  {}{}", faint(prefixes[i]),
                 console_.paint(nameStyle, named(node.id, node.name)),
                 console_.paint(kindStyle, node.kind()), detailsOf(node));
        }
    }

    std::string detailsOf(const NodeSummary& node) const {
        std::string details;
        const auto add = [&details](const std::string& what, const std::string& value) {
            details += fmt::format("  {} {}", what, value);
        };
        for (const auto& instance : node.instances) add("shows", instanceText(instance));
        for (const auto& camera : node.cameras) add("camera", printable(camera));
        for (const auto& light : node.lights) add("light", printable(light));
        if (!node.type.empty()) add("type", printable(node.type));
        for (const auto& layer : node.layers) add("layer", printable(layer));
        if (!node.instances.empty()) add("bounds", boxText(node.box));
        return details;
    }

    static std::string instanceText(const InstanceSummary& instance) {
        std::string materials;
        for (const auto& [symbol, id] : instance.materials) {
            materials += (materials.empty() ? "" : ", ") + printable(id);
        }
        std::string text = fmt::format("{} [{}]", printable(instance.geometryId), materials);
        if (instance.controllerId.empty()) return text;
        text += "  through " + printable(instance.controllerId);
        for (const auto& skeleton : instance.skeletons) {
            text += (&skeleton == &instance.skeletons.front() ? "  skeleton " : ", ") +
                    printable(skeleton);
        }
        return text;
    }

    void writeLayers() {
        section("Layers");
        for (const auto& layer : summary_.layers) {
            line("  {} {}  {}", layer.id, printable(layer.name),
                 faint(fmt::format("{} nodes", layer.nodes)));
        }
    }

    void writeGeometries() {
        if (summary_.geometries.empty()) return;
        section("Geometries");
        for (const auto& geometry : summary_.geometries) {
            line("  {}  {}, {} faces, bounds {}",
                 console_.paint(nameStyle, named(geometry.id, geometry.name)),
                 console_.paint(kindStyle, geometry.type), geometry.faces(), boxText(geometry.box));
            for (const auto& stream : geometry.streams) {
                line("    stream {}  {} x {}", printable(stream.name), stream.tuples,
                     stream.stride);
            }
            for (const auto& primitive : geometry.primitives) {
                line("    {} {}  symbol {}", primitive.faces, primitive.type,
                     printable(primitive.materialSymbol));
            }
        }
    }

    void writeMaterials() {
        section("Materials");
        for (const auto& material : summary_.materials) {
            const std::string technique =
                material.technique.empty() ? "" : ", technique " + printable(material.technique);
            line("  {}  effect {}{}", console_.paint(nameStyle, printable(material.id)),
                 printable(material.effect), technique);
            for (const auto& parameter : material.parameters) {
                line("    {} = {}  {}", printable(parameter.name), printable(parameter.value),
                     faint(printable(parameter.type)));
            }
        }
    }

    void writeOthers() {
        if (!summary_.images.empty()) section("Images");
        for (const auto& image : summary_.images) {
            line("  {}  {}", console_.paint(nameStyle, printable(image.id)), printable(image.file));
        }
        if (!summary_.cameras.empty()) section("Cameras");
        for (const auto& camera : summary_.cameras) {
            line("  {}  {}, field of view {:.5g}, from {:.5g} to {:.5g}",
                 console_.paint(nameStyle, named(camera.id, camera.name)), camera.type, camera.yFov,
                 camera.zNear, camera.zFar);
        }
        if (!summary_.lights.empty()) section("Lights");
        for (const auto& light : summary_.lights) {
            line("  {}  {}, color {}", console_.paint(nameStyle, named(light.id, light.name)),
                 light.type, vectorText(light.colour));
        }
    }

    void writeControllers() {
        if (summary_.controllers.empty()) return;
        section("Controllers");
        for (const auto& controller : summary_.controllers) {
            line("  {}  skin of {}, {} joints, {} influences on {} vertices",
                 console_.paint(nameStyle, named(controller.id, controller.name)),
                 printable(controller.geometryId), controller.joints, controller.influences,
                 controller.vertices);
        }
    }

    void writeNotes() {
        if (summary_.notes.empty()) return;
        section("Notes");
        for (const auto& note : summary_.notes) line("  {}", printable(note));
    }

    const ModelSummary& summary_;
    const Console& console_;
    std::string text_;
};

}  // namespace

std::string summaryText(const ModelSummary& summary, const Console& console) {
    return SummaryWriter(summary, console).write();
}

}  // namespace vantorix::apps::cli
