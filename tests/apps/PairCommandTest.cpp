#include <nlohmann/json.hpp>

#include "apps/render/Picture.h"
#include "apps/render/PictureFile.h"
#include "tests/apps/Program.h"

namespace vantorix::apps {
namespace {

using nlohmann::json;

/// Beside "square.obj", which is red: "tall.obj", the same twice as tall and blue, and "two.obj",
/// two squares side by side.
struct TwoModels : Program {
    TwoModels() {
        folder.write("blue.mtl", "newmtl paint\nKd 0 0 1\n");
        folder.write("tall.obj",
                     "mtllib blue.mtl\no Square\nusemtl paint\n"
                     "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nf 1 2 3 4\n");
        folder.write("two.obj",
                     "mtllib blue.mtl\no Square\nusemtl paint\n"
                     "v 0 0 0\nv 2 0 0\nv 2 1 0\nv 0 1 0\nf 1 2 3 4\n"
                     "o Other\nv 3 0 0\nv 5 0 0\nv 5 1 0\nv 3 1 0\nf 5 6 7 8\n");
    }

    json answer(const std::string& arguments, int exitCode = 0) const {
        const auto done = run(arguments + " --json");
        EXPECT_EQ(done.exitCode, exitCode) << done.err;
        EXPECT_EQ(done.err, "");
        return json::parse(done.out);
    }

    static json fateOf(const json& library, const std::string& id) {
        for (const auto& item : library) {
            if (item["id"] == id) return item;
        }
        return nullptr;
    }
};
using MergeCommand = TwoModels;
using MorphCommand = TwoModels;
using DiffCommand = TwoModels;

TEST_F(MergeCommand, TellsWhatBecameOfEverything) {
    const json merged = answer("merge square.obj two.obj");
    EXPECT_EQ(fateOf(merged["geometries"], "Other"), json({{"id", "Other"}, {"fate", "added"}}));
    EXPECT_EQ(fateOf(merged["geometries"], "Square")["newId"], "Square__renamed__");
    EXPECT_EQ(fateOf(merged["effects"], "defaultEffect")["fate"], "discarded");
    const std::string paint = fateOf(merged["materials"], "paint")["newId"];
    EXPECT_EQ(paint.rfind("paint__renamed_OID", 0), 0u) << paint;
    EXPECT_EQ(merged["layers"].size(), 6u);
    std::size_t copied = 0, isNew = 0;
    for (const auto& node : merged["nodes"]) copied += node["fate"] != "discarded";
    for (const auto& node : merged["tree"]) isNew += node["new"] == true;
    EXPECT_EQ(isNew, copied);
    EXPECT_EQ(merged["tree"].size(), answer("info square.obj")["nodes"].size() + copied);
}

TEST_F(MergeCommand, FlagsAreTheBitsOfTheOptions) {
    const json byFlags = answer(
        "merge square.obj two.obj --discard-geometries --discard-materials --discard-images "
        "--discard-layers --discard-nodes");
    EXPECT_EQ(byFlags["options"], 0x1f);
    EXPECT_EQ(fateOf(byFlags["geometries"], "Square")["fate"], "discarded");
    EXPECT_EQ(fateOf(byFlags["materials"], "paint")["fate"], "discarded");
    EXPECT_EQ(fateOf(byFlags["layers"], "hidden")["fate"], "discarded");
    const json byBits = answer("merge square.obj two.obj --options 0x1f");
    EXPECT_EQ(byBits["geometries"], byFlags["geometries"]);
    const json nodes = answer("merge two.obj square.obj --merge-nodes --into two.obj")["nodes"];
    EXPECT_EQ(nodes[0]["fate"], "added") << nodes;
    const json joined = answer("merge square.obj square.obj --merge-nodes");
    for (const auto& node : joined["nodes"]) EXPECT_EQ(node["fate"], "merged") << joined["nodes"];
}

TEST_F(MergeCommand, DrawsBothModels) {
    folder.write("far.obj",
                 "mtllib blue.mtl\no Far\nusemtl paint\n"
                 "v 3 0 0\nv 5 0 0\nv 5 1 0\nv 3 1 0\nf 1 2 3 4\n");
    const auto merged = run("merge square.obj far.obj --render a.png --size 100x40");
    EXPECT_EQ(merged.exitCode, 0) << merged.err;
    EXPECT_TRUE(isPlain(merged.out)) << merged.out;
    EXPECT_NE(merged.out.find("paint -> paint__renamed_OID"), std::string::npos);
    EXPECT_NE(merged.out.find("Far  geometry  new"), std::string::npos);
    const auto picture = render::readPng(folder.path("a.png"));
    EXPECT_GT(picture.pixel(30, 20)[0], picture.pixel(30, 20)[2] + 50) << "red on the left";
    EXPECT_GT(picture.pixel(70, 20)[2], picture.pixel(70, 20)[0] + 50) << "blue on the right";
}

TEST_F(MorphCommand, MovesPositionsByTheRatio) {
    const json morphed = answer("morph square.obj tall.obj --ratio 0.25 --render a.png");
    EXPECT_EQ(morphed["ratio"], 0.25);
    EXPECT_EQ(morphed["moves"][0],
              json({{"what", "Square"}, {"points", 4}, {"moved", 2}, {"farthest", 0.75}}));
    EXPECT_TRUE(folder.has("a.png"));
    EXPECT_EQ(answer("morph square.obj tall.obj --ratio 1")["moves"][0]["moved"], 0);
    const auto text = run("morph square.obj tall.obj --ratio 0");
    EXPECT_TRUE(isPlain(text.out));
    EXPECT_NE(text.out.find("Square"), std::string::npos);
}

TEST_F(MorphCommand, AModelOfAnotherStructureIsRefused) {
    const auto refused = run("morph square.obj two.obj --ratio 0.5 --render a.png");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(isOneLineWith(refused.err,
                              "square.obj, two.obj: Invalid morph targets [different # "
                              "geometries]\n"))
        << refused.err;
    EXPECT_FALSE(folder.has("a.png"));
}

TEST_F(DiffCommand, EqualModelsWriteNothing) {
    folder.write("copy.obj", squareObj);
    const auto equal = run("diff square.obj copy.obj");
    EXPECT_EQ(equal.exitCode, 0);
    EXPECT_EQ(equal.out + equal.err, "");
    EXPECT_EQ(answer("diff square.obj square.obj")["equal"], true);
}

TEST_F(DiffCommand, TellsWhatOnlyOneHasAndWhatChanged) {
    const json taller = answer("diff square.obj tall.obj", 1);
    EXPECT_EQ(taller["equal"], false);
    const auto& change = taller["geometries"]["changes"][0];
    EXPECT_EQ(change["id"], "Square");
    EXPECT_EQ(change["field"].get<std::string>().rfind("stream ", 0), 0u);
    EXPECT_NE(change["first"], change["second"]);
    EXPECT_EQ(taller["materials"]["changes"][0]["id"], "paint");
    const auto more = run("diff square.obj two.obj");
    EXPECT_EQ(more.exitCode, 1);
    EXPECT_TRUE(isPlain(more.out));
    EXPECT_NE(more.out.find("  + Other\n"), std::string::npos) << more.out;
    EXPECT_NE(run("diff two.obj square.obj").out.find("  - Other\n"), std::string::npos);
}

}  // namespace
}  // namespace vantorix::apps
