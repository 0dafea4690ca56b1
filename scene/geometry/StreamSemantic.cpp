#include "scene/geometry/StreamSemantic.h"

#include <array>

namespace vantorix::scene {
namespace {

struct NamedSemantic {
    const char* name;
    StreamSemantic semantic;
};

// Where names share a semantic, the canonical one comes first.
constexpr std::array<NamedSemantic, 17> names = {{{"VERTEX", VERTEX},
                                                  {"POSITION", POSITION},
                                                  {"COLOR", COLOR},
                                                  {"NORMAL", NORMAL},
                                                  {"BINORMAL", BINORMAL},
                                                  {"TEXBINORMAL", BINORMAL},
                                                  {"TANGENT", TANGENT},
                                                  {"TEXTANGENT", TANGENT},
                                                  {"TEXCOORD", TEXCOORD0},
                                                  {"TEXCOORD0", TEXCOORD0},
                                                  {"TEXCOORD1", TEXCOORD1},
                                                  {"TEXCOORD2", TEXCOORD2},
                                                  {"TEXCOORD3", TEXCOORD3},
                                                  {"TEXCOORD4", TEXCOORD4},
                                                  {"TEXCOORD5", TEXCOORD5},
                                                  {"TEXCOORD6", TEXCOORD6},
                                                  {"TEXCOORD7", TEXCOORD7}}};

}  // namespace

std::string streamSemanticToString(StreamSemantic semantic) {
    for (const auto& entry : names) {
        if (entry.semantic == semantic) return entry.name;
    }
    return "INVALID";
}

StreamSemantic streamSemanticFromString(const std::string& name) {
    for (const auto& entry : names) {
        if (name == entry.name) return entry.semantic;
    }
    return INVALID;
}

}  // namespace vantorix::scene
