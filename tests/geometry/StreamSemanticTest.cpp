#include "scene/geometry/IGeometry.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {
namespace {

TEST(StreamSemantic, EveryNameIsRead) {
    const std::map<std::string, int> values = {
        {"VERTEX", 0},     {"POSITION", 1},     {"COLOR", 2},     {"NORMAL", 11},
        {"BINORMAL", 12},  {"TEXBINORMAL", 12}, {"TANGENT", 13},  {"TEXTANGENT", 13},
        {"TEXCOORD", 3},   {"TEXCOORD0", 3},    {"TEXCOORD1", 4}, {"TEXCOORD2", 5},
        {"TEXCOORD3", 6},  {"TEXCOORD4", 7},    {"TEXCOORD5", 8}, {"TEXCOORD6", 9},
        {"TEXCOORD7", 10}, {"TEXCOORD8", 14},   {"texcoord", 14}, {"", 14},
        {"INVALID", 14},   {"TEXCOORD00", 14},  {"POSITION ", 14}};
    for (const auto& [name, value] : values) {
        EXPECT_EQ(streamSemanticFromString(name), value) << name;
    }
}

TEST(StreamSemantic, ThereIsOneCanonicalNameEach) {
    const std::vector<std::string> names = {"VERTEX",    "POSITION",  "COLOR",     "TEXCOORD",
                                            "TEXCOORD1", "TEXCOORD2", "TEXCOORD3", "TEXCOORD4",
                                            "TEXCOORD5", "TEXCOORD6", "TEXCOORD7", "NORMAL",
                                            "BINORMAL",  "TANGENT",   "INVALID",   "INVALID"};
    for (std::size_t value = 0; value < names.size(); ++value) {
        EXPECT_EQ(streamSemanticToString(static_cast<StreamSemantic>(value)), names[value]);
    }
    EXPECT_EQ(streamSemanticToString(static_cast<StreamSemantic>(-1)), "INVALID");
}

TEST(StreamMapping, AnUnknownNameGivesAnInvalidMapping) {
    EXPECT_EQ(StreamMapping("TEXTANGENT", {}, 2).semantic, TANGENT);
    EXPECT_EQ(StreamMapping("WEIGHT", {}, 2).semantic, INVALID);
    EXPECT_EQ(StreamMapping(NORMAL, {}, 2).offset, 2);
}

TEST(TypeNames, GeometriesCountFromZeroAndPrimitivesFromOne) {
    const std::vector<std::string> geometries = {"Convex Mesh", "Mesh", "Spline", "Invalid",
                                                 "Invalid2"};
    for (std::size_t value = 0; value < geometries.size(); ++value) {
        EXPECT_EQ(IGeometry::typeToString(static_cast<IGeometry::Type>(value)), geometries[value]);
    }
    const std::vector<std::string> primitives = {
        "Invalid2",   "Triangles",     "Polygons",        "Lines",   "Line Strips",
        "Poly lists", "Triangle Fans", "Triangle Strips", "Invalid", "Invalid2"};
    for (std::size_t value = 0; value < primitives.size(); ++value) {
        EXPECT_EQ(IMeshPrimitive::typeToString(static_cast<IMeshPrimitive::Type>(value)),
                  primitives[value]);
    }
}

}  // namespace
}  // namespace vantorix::scene
