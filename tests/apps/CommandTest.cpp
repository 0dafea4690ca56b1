#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "apps/render/Picture.h"
#include "apps/render/PictureFile.h"
#include "tests/apps/Program.h"

namespace vantorix::apps {
namespace {

using nlohmann::json;

using InfoCommand = Program;
using EventsCommand = Program;
using RenderCommand = Program;

TEST_F(Program, HelpShowsExamplesEverywhere) {
    for (const std::string command : {"", "info ", "render ", "events ", "normals ", "subdivide ",
                                      "keys ", "play ", "merge ", "morph ", "diff "}) {
        const auto help = run(command + "--help");
        EXPECT_EQ(help.exitCode, 0);
        EXPECT_NE(help.out.find("Examples:\n  vantorix "), std::string::npos) << command;
        EXPECT_EQ(help.err, "");
    }
}

TEST_F(Program, WrongUseIsOneLine) {
    for (const std::string arguments : {"",
                                        "frobnicate",
                                        "info",
                                        "info --nonsense square.obj",
                                        "events square.obj square.obj",
                                        "render square.obj",
                                        "render square.obj -o a.png --size 0x10",
                                        "render square.obj -o a.png --size 10",
                                        "render square.obj -o a.png --size 99999x99999",
                                        "render square.obj -o a.png --background pinkish",
                                        "render square.obj -o a.png --camera nobody",
                                        "render square.obj -o a.png --frame --camera x",
                                        "normals",
                                        "normals square.obj --times 2",
                                        "subdivide square.obj --times 0",
                                        "subdivide square.obj --times 13",
                                        "subdivide square.obj --geometry nobody",
                                        "subdivide square.obj --size 9x9",
                                        "subdivide square.obj --render a.png --size 0x9",
                                        "play square.obj",
                                        "play square.obj --realtime --frames 0",
                                        "play square.obj --sheet a.png --frames 1001",
                                        "merge square.obj",
                                        "merge square.obj square.obj --options 64",
                                        "merge square.obj square.obj --options 0xg",
                                        "merge square.obj square.obj --into nowhere",
                                        "merge square.obj square.obj --size 2x2",
                                        "merge square.obj square.obj --render a.png --size 0x1",
                                        "morph square.obj square.obj",
                                        "morph square.obj square.obj --ratio 1.5",
                                        "morph square.obj square.obj --ratio nan",
                                        "diff square.obj",
                                        "pick square.obj",
                                        "pick square.obj --ray 1,2,3",
                                        "pick square.obj --pixel 1,2 --ray 1,2,3,4,5,6",
                                        "pick square.obj --pixel 800,1"}) {
        const auto wrong = run(arguments);
        EXPECT_EQ(wrong.exitCode, 2) << arguments;
        EXPECT_EQ(wrong.out, "") << arguments;
        EXPECT_TRUE(isOneLineWith(wrong.err, "vantorix: ")) << arguments << wrong.err;
    }
    EXPECT_FALSE(folder.has("a.png"));
}

TEST_F(Program, FilesThatCannotBeReadAreNamed) {
    folder.write("noise.obj", std::string(100, '\x01'));
    folder.write("notes.txt", "hello");
    for (const std::string command : {"info ", "events ", "render -o a.png ", "info --json ",
                                      "normals ", "subdivide --render a.png ", "merge square.obj ",
                                      "morph --ratio 1 square.obj ", "diff square.obj "}) {
        for (const std::string file : {"missing.obj", "notes.txt", "."}) {
            const auto refused = run(command + file);
            EXPECT_EQ(refused.exitCode, 3) << command << file;
            EXPECT_EQ(refused.out, "");
            EXPECT_TRUE(isOneLineWith(refused.err, "vantorix: " + file + ": ")) << refused.err;
        }
    }
}

TEST_F(Program, LimitsHaveTheirOwnExitCode) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "instrumented programs need more address space than any limit leaves";
#endif
    folder.write("huge.off", "OFF\n1000000000 1000000000 0\n0 0 0\n");
    const auto limited = run("info huge.off");
    EXPECT_EQ(limited.exitCode, 4);
    EXPECT_TRUE(isOneLineWith(limited.err, "huge.off")) << limited.err;
}

TEST_F(Program, LeavesNothingInTheFolder) {
    const auto before = folder.list();
    run("info square.obj");
    run("events square.obj");
    run("info missing.obj");
    EXPECT_EQ(folder.list(), before);
}

TEST_F(Program, OutputThatIsFullIsAFailure) {
    const auto full = run("info square.obj >/dev/full");
    EXPECT_EQ(full.exitCode, 3);
    EXPECT_TRUE(isOneLineWith(full.err, "standard output")) << full.err;
}

TEST_F(InfoCommand, IsPlainWhenPiped) {
    const auto info = run("info square.obj");
    EXPECT_EQ(info.exitCode, 0);
    EXPECT_EQ(info.err, "");
    EXPECT_TRUE(isPlain(info.out)) << info.out;
    for (const std::string part : {"`- ", "Square  geometry", "[paint]", "(0, 0, 0) to (2, 1, 0)",
                                   "faces 1", "1 Polygons", "hidden", "diffuse = 1 0 0"}) {
        EXPECT_NE(info.out.find(part), std::string::npos) << part << "\n" << info.out;
    }
}

TEST_F(InfoCommand, IsColoredOnATerminalUnlessForbidden) {
    const std::string terminal = "env -u NO_COLOR TERM=xterm LC_ALL=C.UTF-8";
    const auto colored = runWatched("info square.obj", terminal);
    EXPECT_EQ(colored.exitCode, 0);
    EXPECT_NE(colored.out.find("\x1b["), std::string::npos);
    EXPECT_NE(colored.out.find("└─ "), std::string::npos);
    const auto plain = runWatched("info square.obj", "env NO_COLOR=1 TERM=xterm LC_ALL=C");
    EXPECT_EQ(plain.out.find("\x1b["), std::string::npos);
    EXPECT_EQ(plain.out.find("└─ "), std::string::npos);
}

TEST_F(InfoCommand, JsonTellsTheSameToPrograms) {
    const auto info = run("info --json square.obj");
    EXPECT_EQ(info.exitCode, 0);
    const json document = json::parse(info.out);
    EXPECT_EQ(document["file"], "square.obj");
    EXPECT_EQ(document["bounds"]["max"], json({2.0, 1.0, 0.0}));
    EXPECT_EQ(document["counts"]["faces"], 1);
    EXPECT_EQ(document["counts"]["nodes"], document["nodes"].size());
    EXPECT_EQ(document["nodes"][0]["parent"], nullptr);
    EXPECT_EQ(document["nodes"][2]["parent"], 1);
    EXPECT_EQ(document["nodes"][2]["kind"], "geometry");
    EXPECT_EQ(document["layers"][0]["name"], "hidden");
    EXPECT_EQ(info.out, run("info --json square.obj").out) << "the same every time";
}

TEST_F(InfoCommand, SeveralModelsAreAListAndOneFailureSpoilsNothing) {
    const auto info = run("info --json square.obj missing.obj square.obj");
    EXPECT_EQ(info.exitCode, 3);
    EXPECT_EQ(json::parse(info.out).size(), 2u);
    EXPECT_TRUE(isOneLineWith(info.err, "missing.obj"));
}

TEST_F(InfoCommand, NamesCannotTalkToTheTerminal) {
    folder.write("evil.obj", "o a\x1b[31mb\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const auto info = run("info evil.obj");
    EXPECT_EQ(info.exitCode, 0);
    EXPECT_TRUE(isPlain(info.out)) << info.out;
    EXPECT_TRUE(json::accept(run("info --json evil.obj").out));
}

TEST_F(Program, ReasonsFromFilesCannotTalkToTheTerminal) {
    folder.write("evil.bvh", "HIERARCHY\nROOT a\n{\nOFFSET 1\x9f\xc2 0 0\n}\n");
    const auto refused = run("info evil.bvh");
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_TRUE(isPlain(refused.err)) << refused.err;
    EXPECT_TRUE(isOneLineWith(refused.err, "evil.bvh: ")) << refused.err;
}

TEST_F(EventsCommand, ListsTheEventsInOrderWithCounts) {
    const auto events = run("events --json square.obj");
    EXPECT_EQ(events.exitCode, 0);
    const json document = json::parse(events.out);
    EXPECT_EQ(document["events"][0], json({{"name", "SceneUpdate"}, {"data", "MaterialList"}}));
    std::map<std::string, std::size_t> counts;
    for (const auto& event : document["events"]) ++counts[event["name"]];
    EXPECT_EQ(document["counts"], json(counts));
    EXPECT_EQ(counts["NodeNewChild"], 2u);

    const auto text = run("events square.obj");
    EXPECT_TRUE(isPlain(text.out));
    EXPECT_NE(text.out.find("NodeNewChild"), std::string::npos);
}

TEST_F(RenderCommand, WritesAPictureOfTheAskedSize) {
    const auto rendered = run("render square.obj -o a.png --size 60x40 --background white");
    EXPECT_EQ(rendered.exitCode, 0) << rendered.err;
    EXPECT_EQ(rendered.out + rendered.err, "");
    const auto picture = render::readPng(folder.path("a.png"));
    EXPECT_EQ(picture.width, 60);
    EXPECT_EQ(picture.height, 40);
    EXPECT_GT(picture.pixel(30, 20)[0], picture.pixel(30, 20)[1] + 80);
    EXPECT_EQ(picture.pixel(1, 1)[1], 255);
    EXPECT_EQ(folder.list(), std::vector<std::string>({"a.png", "square.mtl", "square.obj"}));
}

TEST_F(RenderCommand, NothingVisibleIsAWarning) {
    folder.write("point.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n");
    const auto rendered = run("render point.obj -o a.png --size 20x20 --background");
    EXPECT_EQ(rendered.exitCode, 0);
    EXPECT_TRUE(isOneLineWith(rendered.err, "point.obj: nothing is visible")) << rendered.err;
    EXPECT_TRUE(folder.has("a.png"));
}

TEST_F(RenderCommand, SeveralModelsShareThePicture) {
    const auto rendered =
        run("render square.obj missing.obj square.obj square.obj -o a.png "
            "--size 80x80 --background transparent");
    EXPECT_EQ(rendered.exitCode, 3);
    EXPECT_TRUE(isOneLineWith(rendered.err, "missing.obj")) << rendered.err;
    const auto picture = render::readPng(folder.path("a.png"));
    EXPECT_GT(picture.pixel(20, 60)[3], 0);
    EXPECT_EQ(picture.pixel(60, 60)[3], 0);
    EXPECT_GT(picture.pixel(20, 20)[3], 0);
    EXPECT_GT(picture.pixel(60, 20)[3], 0);
}

TEST_F(RenderCommand, APictureThatCannotBeWrittenIsNamed) {
    const auto rendered = run("render square.obj -o 'no such folder/a.png' --size 20x20");
    EXPECT_EQ(rendered.exitCode, 3);
    EXPECT_TRUE(isOneLineWith(rendered.err, "no such folder/a.png: No such file or directory"))
        << rendered.err;
}

TEST_F(RenderCommand, MissingTexturesAreWarnings) {
    folder.write("square.mtl", "newmtl paint\nKd 1 0 0\nmap_Kd missing.png\n");
    folder.write("square.obj",
                 "mtllib square.mtl\nusemtl paint\nv 0 0 0\nv 2 0 0\nv 2 1 0\nvt 0 0\nvt 1 0\n"
                 "vt 1 1\nf 1/1 2/2 3/3\n");
    const auto rendered = run("render square.obj -o a.png --size 20x20");
    EXPECT_EQ(rendered.exitCode, 0);
    EXPECT_TRUE(isOneLineWith(rendered.err, "texture missing.png: there is no such file"))
        << rendered.err;
}

}  // namespace
}  // namespace vantorix::apps
