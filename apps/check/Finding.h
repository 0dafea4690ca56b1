#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vantorix::apps::check {

/// Something in a scene that cannot be meant.
struct Finding {
    enum Kind {
        INDEX,       ///< Leads past the end of what it counts.
        STRIDE,      ///< Floats per tuple do not fit the meaning or the number of values.
        COUNT,       ///< Two lists that belong together differ in length.
        NOT_FINITE,  ///< Infinity or NaN.
        DEGENERATE,  ///< A face without area.
        UNUSED,      ///< Positions that no face uses.
        ORPHAN,      ///< A reference that leads to nothing.
        IDENTIFIER,  ///< Repeated, empty, or with characters that separate other texts.
        CHANNEL,     ///< An animation that reaches nothing, or keys that cannot be played.
        SKIN,        ///< Influences, joints and weights that disagree.
        KIND_COUNT
    };

    Kind kind;
    std::string place;  ///< "geometry robot, primitive 0": what it was found in, from outside in.
    std::string text;   ///< What is wrong, without the positions.
    /// Where in that place, in ascending order: tuples, records, faces, keys, as the text says.
    std::vector<std::size_t> positions;
};

using Findings = std::vector<Finding>;

/// For programs: "index", "stride", "count", "not-finite", "degenerate", "unused", "orphan",
/// "identifier", "channel", "skin".
const char* nameOf(Finding::Kind kind);

/// For people: "Indices out of range", ...
const char* titleOf(Finding::Kind kind);

}  // namespace vantorix::apps::check
