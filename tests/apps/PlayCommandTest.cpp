#include <nlohmann/json.hpp>

#include "apps/render/Picture.h"
#include "apps/render/PictureFile.h"
#include "tests/apps/Program.h"

namespace vantorix::apps {
namespace {

using nlohmann::json;

/// A hip that moves and a leg that swings, for three tenths of a second.
constexpr const char* walkBvh =
    "HIERARCHY\nROOT Hip\n{\nOFFSET 0 0 0\n"
    "CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
    "JOINT Leg.L\n{\nOFFSET 0 -5 0\nCHANNELS 3 Zrotation Xrotation Yrotation\n"
    "End Site\n{\nOFFSET 0 -5 0\n}\n}\n}\nMOTION\nFrames: 4\nFrame Time: 0.1\n"
    "0 0 0 0 0 0 0 0 0\n1 0 0 0 0 0 30 0 0\n2 0 0 0 0 0 60 0 0\n3 0 0 0 0 0 90 0 0\n";

struct Walk : Program {
    Walk() { folder.write("walk.bvh", walkBvh); }

    render::Picture picture(const std::string& name) const {
        return render::readPng(folder.path(name));
    }
};
using KeysCommand = Walk;
using PlayCommand = Walk;

int countDifferent(const render::Picture& a, const render::Picture& b) {
    int different = 0;
    for (std::size_t i = 0; i < a.rgba.size(); i += 4) different += a.rgba[i] != b.rgba[i];
    return different;
}

TEST_F(KeysCommand, ShowsClipsTimesAndTargets) {
    const auto keys = run("keys --json walk.bvh");
    ASSERT_EQ(keys.exitCode, 0) << keys.err;
    const json clips = json::parse(keys.out)["clips"];
    ASSERT_EQ(clips.size(), 1u);
    EXPECT_NEAR(clips[0]["seconds"].get<double>(), 0.3, 0.01);
    EXPECT_EQ(clips[0]["frameTimes"].size(), 4u);
    EXPECT_EQ(clips[0]["frameTimes"][0], 0);
    ASSERT_EQ(clips[0]["channels"].size(), 2u);
    const json& leg = clips[0]["channels"][1];
    EXPECT_EQ(leg["target"], "Leg_L/transform");
    EXPECT_EQ(leg["stride"], 16);
    EXPECT_EQ(leg["keys"], 5);
    EXPECT_EQ(clips[0]["channels"][0]["target"], "Hip/translate");
    const auto text = run("keys walk.bvh");
    EXPECT_TRUE(isPlain(text.out)) << text.out;
    EXPECT_NE(text.out.find("Leg_L/transform     5      16"), std::string::npos) << text.out;
}

TEST_F(PlayCommand, AModelWithoutAnimationIsANo) {
    for (const std::string command : {"keys", "play --realtime", "play --sheet a.png"}) {
        const auto refused = run(command + " square.obj");
        EXPECT_EQ(refused.exitCode, 1) << command;
        EXPECT_EQ(refused.out, "");
        EXPECT_TRUE(isOneLineWith(refused.err, "square.obj: has no animation")) << refused.err;
    }
    EXPECT_FALSE(folder.has("a.png"));
}

TEST_F(PlayCommand, ClipsAreFoundByNameAndOthersListed) {
    const std::string id = json::parse(run("keys --json walk.bvh").out)["clips"][0]["id"];
    const auto known = run("play walk.bvh --frames 1 --sheet a.png --clip '" + id + "'");
    EXPECT_EQ(known.exitCode, 0) << known.err;
    const auto unknown = run("play walk.bvh --sheet b.png --clip run");
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(isOneLineWith(unknown.err, "there is no clip \"run\"; the model has " + id))
        << unknown.err;
    EXPECT_FALSE(folder.has("b.png"));
}

TEST_F(PlayCommand, WritesAPicturePerFrameFromAViewThatStandsStill) {
    const auto played = run("play walk.bvh --frames 3 -o frames --size 80x60 --json");
    ASSERT_EQ(played.exitCode, 0) << played.err;
    EXPECT_EQ(played.err, "");
    const json report = json::parse(played.out);
    ASSERT_EQ(report["frames"].size(), 3u);
    EXPECT_EQ(report["frames"][1]["picture"], "frames/frame_0001.png");
    EXPECT_EQ(report["frames"][2]["seconds"], 0.2);
    const auto first = picture("frames/frame_0000.png");
    EXPECT_EQ(first.width, 80);
    EXPECT_GT(countDifferent(first, picture("frames/frame_0001.png")), 20);
    EXPECT_GT(countDifferent(first, picture("frames/frame_0002.png")), 20);
}

TEST_F(PlayCommand, TheSheetOfTheFigureShowsItMoving) {
    const std::string play =
        "play '" VANTORIX_SAMPLES "/figure.dae' --frames 4 --size 200x160 --sheet ";
    ASSERT_EQ(run(play + "a.png").exitCode, 0);
    ASSERT_EQ(run(play + "b.png").exitCode, 0);
    const auto sheet = picture("a.png");
    EXPECT_EQ(countDifferent(sheet, picture("b.png")), 0) << "the same every time";
    int moved = 0;
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 100; ++x) {
            // The second frame beside the first one: the same background, another pose.
            moved += std::abs(sheet.pixel(x, y + 80)[0] - sheet.pixel(x + 100, y + 80)[0]) > 24;
        }
    }
    EXPECT_GT(moved, 60);
    EXPECT_LT(moved, 1500) << "the figure stays in the picture";
}

TEST_F(PlayCommand, InRealTimeTheScenesOwnThreadPlays) {
    const auto played = run("play walk.bvh --realtime --json");
    ASSERT_EQ(played.exitCode, 0) << played.err;
    const json report = json::parse(played.out)["realtime"];
    EXPECT_GT(report["cycles"], 3);
    EXPECT_GT(report["poses"], 1);
    EXPECT_GE(report["intervalMs"], 10.0);
    EXPECT_LE(report["SyncScene"], report["poses"]);
    EXPECT_GT(report["SyncScene"], 0);
}

TEST_F(PlayCommand, FoldersThatCannotBeMadeAreNamed) {
    const auto refused = run("play walk.bvh -o 'no such/folder'");
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_TRUE(isOneLineWith(refused.err, "no such/folder: ")) << refused.err;
}

}  // namespace
}  // namespace vantorix::apps
