#pragma once

#include <string>

namespace vantorix::scene {

/// A channel's target text taken apart: node ID, "/", SID of a transformation element, and where
/// one component is meant, "." and its name.
struct ChannelTarget {
    explicit ChannelTarget(const std::string& text);

    std::string nodeID;     ///< Before the first "/"; the whole text when there is none.
    std::string sid;        ///< From there to the first ".", to the end when none follows.
    std::string component;  ///< Behind the first "." of the whole text.
    int componentIndex;     ///< See coordinateIndex().
};

/// 0, 1 and 2 for "x", "y" and "z", 3 for "w" and "angle", in any letter case; -1, which means the
/// whole value, for anything else.
int coordinateIndex(const std::string& name);

/// Whether @p text equals @p lowerCase once its letters A to Z are in lower case.
bool equalsInLowerCase(const std::string& text, const char* lowerCase);

}  // namespace vantorix::scene
