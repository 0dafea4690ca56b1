#include <nlohmann/json.hpp>

#include "apps/render/Framing.h"
#include "apps/render/PictureFile.h"
#include "apps/render/PixelRay.h"
#include "tests/apps/Program.h"

namespace vantorix::apps {
namespace {

using nlohmann::json;
using PickCommand = Program;

constexpr const char* quotedFigure = "'" VANTORIX_SAMPLES "/figure.dae'";

TEST(PixelRay, LeadsBackToItsPixel) {
    render::Box box;
    box.least = {-1, -2, -3};
    box.most = {3, 2, 1};
    for (const bool orthographic : {false, true}) {
        render::Lens lens;
        lens.orthographic = orthographic;
        lens.yFov = orthographic ? 3 : 45;
        Eigen::Matrix4d world = Eigen::Matrix4d::Identity();
        world.col(3).head<3>() << 1, 2, 20;
        for (const auto& viewpoint :
             {render::frame(box, 2, 4 / 3.0), render::throughLens(lens, world, 4 / 3.0)}) {
            for (const int x : {0, 399, 799}) {
                const auto ray = rayThrough(viewpoint, 800, 600, x, 100);
                const auto pixel = pixelOf(viewpoint, 800, 600, ray.origin + ray.direction * 5);
                ASSERT_TRUE(pixel);
                EXPECT_TRUE(pixel->isApprox(Eigen::Vector2d(x + 0.5, 100.5), 1e-6)) << *pixel;
                EXPECT_FALSE(pixelOf(viewpoint, 800, 600, ray.origin - ray.direction * 100) &&
                             !orthographic);
            }
        }
    }
}

TEST_F(PickCommand, ARayMeetsTheNearestFace) {
    folder.write("two.obj",
                 "o Near\nv 0 0 1\nv 1 0 1\nv 0 1 1\nf 1 2 3\n"
                 "o Far\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 4 5 6 7\n");
    const auto nearest = run("pick two.obj --ray 0.3,0.2,5,0,0,-2");
    EXPECT_EQ(nearest.exitCode, 0) << nearest.err;
    EXPECT_NE(nearest.out.find("geometry   Near\n"), std::string::npos) << nearest.out;
    EXPECT_NE(nearest.out.find("distance   4\n"), std::string::npos) << nearest.out;

    const auto all = json::parse(run("pick two.obj --json --all --ray 0.3,0.2,5,0,0,-2").out);
    ASSERT_EQ(all["hits"].size(), 2u);
    EXPECT_EQ(all["hits"][1]["geometry"], "Far");
    EXPECT_EQ(all["hits"][1]["distance"], 5);
    EXPECT_EQ(all["hits"][1]["path"].back(), all["hits"][1]["node"]);

    const auto missed = run("pick two.obj --ray=-0.3,0.2,5,0,0,-2");
    EXPECT_EQ(missed.exitCode, 1);
    EXPECT_EQ(missed.out, "nothing is met\n");
}

TEST_F(PickCommand, APixelMeetsWhatThePictureShows) {
    const auto hit = json::parse(run(std::string("pick --json --pixel 200,150 --size 400x300 ") +
                                     quotedFigure + " --render p.png")
                                     .out)["hits"];
    ASSERT_EQ(hit.size(), 1u);
    EXPECT_GT(hit[0]["path"].size(), 1u);
    const auto picture = render::readPng(folder.path("p.png"));
    const auto* const middle = picture.pixel(200, 299 - 150);
    EXPECT_GT(middle[0], 200);
    EXPECT_LT(middle[1], 60);

    const auto corner = run(std::string("pick --pixel 0,0 --size 400x300 ") + quotedFigure);
    EXPECT_EQ(corner.exitCode, 1) << corner.out;
}

}  // namespace
}  // namespace vantorix::apps
