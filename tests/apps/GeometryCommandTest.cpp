#include <nlohmann/json.hpp>

#include "apps/render/Picture.h"
#include "apps/render/PictureFile.h"
#include "tests/apps/Program.h"

namespace vantorix::apps {
namespace {

using nlohmann::json;
using NormalsCommand = Program;
using SubdivideCommand = Program;

/// Two quads that meet at a right angle, one of each material, without normals.
constexpr const char* cornerObj =
    "mtllib square.mtl\no Corner\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 0 0 1\nv 0 1 1\n"
    "usemtl paint\nf 1 2 3 4\nusemtl blue\nf 1 4 6 5\n";

json geometriesOf(const ProcessRun& run) {
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return json::parse(run.out)["geometries"];
}

TEST_F(NormalsCommand, SmoothsWhatSharesAPositionAndTellsSo) {
    folder.write("tent.obj",
                 "o Tent\nv 0 0 0\nv 1 0 1\nv 1 1 1\nv 0 1 0\nv 2 0 0\nv 2 1 0\n"
                 "f 1 2 3 4\nf 2 5 6 3\n");
    const auto geometries = geometriesOf(run("normals --json tent.obj"));
    ASSERT_EQ(geometries.size(), 1u);
    const json& before = geometries[0]["before"];
    const json& after = geometries[0]["after"];
    EXPECT_EQ(geometries[0]["id"], "Tent");
    EXPECT_EQ(before["faces"], 4);
    EXPECT_EQ(before["normals"], 2);
    EXPECT_EQ(after["normals"], 4) << "both ends of the ridge have more triangles on one side";
    EXPECT_EQ(after["positions"], before["positions"]);
    EXPECT_EQ(after["bytes"].get<int>() - before["bytes"].get<int>(), 24);
}

TEST_F(SubdivideCommand, EveryTriangleBecomesFourInEveryMaterial) {
    folder.write("corner.obj", cornerObj);
    folder.write("square.mtl", std::string(squareMtl) + "newmtl blue\nKd 0 0 1\n");
    const auto geometries = geometriesOf(run("subdivide --json --times 2 corner.obj"));
    ASSERT_EQ(geometries.size(), 2u);
    for (const auto& geometry : geometries) {
        EXPECT_EQ(geometry["before"]["faces"], 2);
        EXPECT_EQ(geometry["after"]["faces"], 32);
        EXPECT_EQ(geometry["after"]["positions"], 25) << "a grid of five by five";
        EXPECT_EQ(geometry["name"], "Corner");
    }
    EXPECT_EQ(geometriesOf(run("subdivide --json corner.obj --geometry Corner")).size(), 2u);
}

TEST_F(SubdivideCommand, OneGeometryCanBeChosen) {
    folder.write("corner.obj", cornerObj);
    folder.write("square.mtl", std::string(squareMtl) + "newmtl blue\nKd 0 0 1\n");
    const auto one = geometriesOf(run("subdivide --json corner.obj --geometry Corner-blue"));
    ASSERT_EQ(one.size(), 1u);
    EXPECT_EQ(one[0]["after"]["faces"], 8);
    const auto wrong = run("subdivide corner.obj --geometry nobody");
    EXPECT_TRUE(isOneLineWith(wrong.err, "the model has Corner-blue, Corner-paint")) << wrong.err;
}

TEST_F(SubdivideCommand, SkinsFollow) {
    const auto geometries = geometriesOf(run("subdivide --json '" VANTORIX_SAMPLES "/figure.dae'"));
    ASSERT_EQ(geometries.size(), 6u);
    for (const auto& geometry : geometries) {
        EXPECT_EQ(geometry["after"]["faces"].get<int>(),
                  4 * geometry["before"]["faces"].get<int>());
        EXPECT_GE(geometry["after"]["influences"], geometry["after"]["positions"]);
    }
}

TEST_F(SubdivideCommand, ALimitIsMetBeforeMemoryIsTaken) {
    const auto limited = run("subdivide square.obj --times 12");
    EXPECT_EQ(limited.exitCode, 4);
    EXPECT_EQ(limited.out, "");
    EXPECT_TRUE(isOneLineWith(limited.err, "square.obj: would have 33554432 faces, 8000000 are"))
        << limited.err;
}

TEST_F(SubdivideCommand, TextIsOneAlignedTable) {
    const auto table = run("subdivide square.obj");
    EXPECT_EQ(table.exitCode, 0);
    EXPECT_TRUE(isPlain(table.out)) << table.out;
    EXPECT_NE(table.out.find("geometry  positions  normals   faces"), std::string::npos)
        << table.out;
    EXPECT_NE(table.out.find("Square       4 -> 9        1  2 -> 8"), std::string::npos)
        << table.out;
}

TEST_F(SubdivideCommand, ThePictureShowsBothWithTheirEdges) {
    const auto drawn = run("subdivide square.obj --times 3 --render a.png --size 200x100");
    ASSERT_EQ(drawn.exitCode, 0) << drawn.err;
    EXPECT_EQ(drawn.err, "");
    const auto picture = render::readPng(folder.path("a.png"));
    ASSERT_EQ(picture.width, 200);
    const auto countDark = [&picture](int first, int last) {
        int dark = 0;
        for (int y = 0; y < picture.height; ++y) {
            for (int x = first; x < last; ++x) {
                const auto* const pixel = picture.pixel(x, y);
                dark += pixel[0] < 140 && pixel[2] < 140;
            }
        }
        return dark;
    };
    EXPECT_GT(countDark(0, 100), 5);
    EXPECT_GT(countDark(100, 200), 3 * countDark(0, 100)) << "more edges on the right";
}

}  // namespace
}  // namespace vantorix::apps
