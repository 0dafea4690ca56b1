#pragma once

#include <string>

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// What the values of a stream mean. Texture coordinate set n (0 to 7) is TEXCOORD0 + n.
/// VERTEX stands for all vertices mappings of a mesh at once.
enum StreamSemantic : int {
    VERTEX = 0,
    POSITION = 1,
    COLOR = 2,
    TEXCOORD0 = 3,
    TEXCOORD1 = 4,
    TEXCOORD2 = 5,
    TEXCOORD3 = 6,
    TEXCOORD4 = 7,
    TEXCOORD5 = 8,
    TEXCOORD6 = 9,
    TEXCOORD7 = 10,
    NORMAL = 11,
    BINORMAL = 12,
    TANGENT = 13,
    INVALID = 14
};

/// The canonical name: "TEXCOORD" for set 0, "INVALID" for every value outside 0 to 13.
VANTORIX_SCENE_EXPORT std::string streamSemanticToString(StreamSemantic semantic);

/// Exact, case-sensitive reading; INVALID for every unknown name. Several names share a semantic:
/// "TEXCOORD" and "TEXCOORD0", "BINORMAL" and "TEXBINORMAL", "TANGENT" and "TEXTANGENT".
VANTORIX_SCENE_EXPORT StreamSemantic streamSemanticFromString(const std::string& name);

}  // namespace vantorix::scene
