#include <gtest/gtest.h>

#include "apps/render/SurfaceReader.h"
#include "tests/apps/SceneMaking.h"

namespace vantorix::apps::render {
namespace {

using Parameters = std::vector<std::pair<std::string, std::string>>;

Surface surfaceOf(const Parameters& parameters) { return readSurface(*makeMaterial(parameters)); }

TEST(SurfaceReader, AMaterialThatSaysNothingIsGrayAndOpaque) {
    const Surface surface = surfaceOf({});
    EXPECT_EQ(surface.colour, Eigen::Vector4f(0.8f, 0.8f, 0.8f, 1.0f));
    EXPECT_EQ(surface.specular, Eigen::Vector3f::Zero());
    EXPECT_TRUE(surface.imageId.empty());
}

TEST(SurfaceReader, ReadsColorsBetweenBlanksAndCommas) {
    EXPECT_EQ(surfaceOf({{"diffuse", "1, .5 0.25"}}).colour.head<3>(),
              Eigen::Vector3f(1.0f, 0.5f, 0.25f));
    EXPECT_EQ(surfaceOf({{"emissive", "2 -1 0 1"}}).emission, Eigen::Vector3f(1, 0, 0));
    for (const char* text : {"red", "1 2", "nan nan nan", "1e99 0 0", ""}) {
        EXPECT_EQ(surfaceOf({{"diffuse", text}}).colour.x(), 0.8f) << text;
    }
}

TEST(SurfaceReader, OpacityComesFromItsOwnParameterFirst) {
    EXPECT_EQ(surfaceOf({{"opacity", "0.5"}, {"diffuse", "1 1 1 0.1"}}).colour.w(), 0.5f);
    EXPECT_EQ(surfaceOf({{"diffuse", "1 1 1 0"}}).colour.w(), 1.0f);
    EXPECT_EQ(surfaceOf({{"alphaMode", "BLEND"}, {"diffuse", "1 1 1 0.25"}}).colour.w(), 0.25f);
    EXPECT_EQ(surfaceOf({{"alphaMode", "OPAQUE"}, {"opacity", "0.5"}}).colour.w(), 1.0f);
}

TEST(SurfaceReader, ModesTellWhatTheTextureAlphaDoes) {
    EXPECT_EQ(surfaceOf({}).alpha, Surface::BLENDED);
    EXPECT_EQ(surfaceOf({{"alphaMode", "OPAQUE"}}).alpha, Surface::IGNORED);
    const Surface cut = surfaceOf({{"alphaMode", "MASK"}, {"alphaCutoff", "0.7"}});
    EXPECT_EQ(cut.alpha, Surface::CUT);
    EXPECT_FLOAT_EQ(cut.alphaCutoff, 0.7f);
}

TEST(SurfaceReader, ATextureReplacesTheNeutralGray) {
    const Surface surface =
        surfaceOf({{"diffuseTexture", "bricks"}, {"diffuseTextureSet", "1e30"}});
    EXPECT_EQ(surface.imageId, "bricks");
    EXPECT_EQ(surface.colour.x(), 1.0f);
    EXPECT_EQ(surface.texCoordSet, 7);
}

TEST(SurfaceReader, OnlyShinyMaterialsShine) {
    EXPECT_EQ(surfaceOf({{"specular", "1 1 1"}}).specular, Eigen::Vector3f::Zero());
    EXPECT_GT(surfaceOf({{"specular", "1 1 1"}, {"shininess", "30"}}).specular.x(), 0.0f);
    const Surface metal =
        surfaceOf({{"diffuse", "1 0 0"}, {"metallic", "1"}, {"roughness", "0.2"}});
    EXPECT_GT(metal.specular.x(), 0.5f);
    EXPECT_EQ(metal.specular.y(), 0.0f);
}

}  // namespace
}  // namespace vantorix::apps::render
