#include "apps/vantorix/TreeLines.h"

#include <fmt/format.h>

namespace vantorix::apps::cli {
namespace {

constexpr std::size_t deepestDrawn = 40;

struct Strokes {
    const char* pass;  ///< Past a node whose row goes on.
    const char* gap;
    const char* branch;
    const char* last;
};

constexpr Strokes lines = {"│  ", "   ", "├─ ", "└─ "};
constexpr Strokes ascii = {"|  ", "   ", "|- ", "`- "};

std::string deepPrefix(std::size_t depth) { return fmt::format("... {}: ", depth); }

}  // namespace

std::vector<std::string> treePrefixes(const std::vector<std::size_t>& depths, bool lineDrawing) {
    const Strokes& strokes = lineDrawing ? lines : ascii;
    std::vector<std::string> prefixes(depths.size());
    // From the end, so that it is known whether a row goes on below a line.
    std::vector<bool> goesOn(deepestDrawn + 1, false);
    for (std::size_t i = depths.size(); i > 0; --i) {
        const std::size_t depth = depths[i - 1];
        std::string& prefix = prefixes[i - 1];
        if (depth > deepestDrawn) {
            prefix = deepPrefix(depth);
            continue;
        }
        for (std::size_t level = 1; level < depth; ++level) {
            prefix += goesOn[level] ? strokes.pass : strokes.gap;
        }
        if (depth > 0) prefix += goesOn[depth] ? strokes.branch : strokes.last;
        goesOn[depth] = true;
        for (std::size_t level = depth + 1; level <= deepestDrawn; ++level) goesOn[level] = false;
    }
    return prefixes;
}

}  // namespace vantorix::apps::cli
