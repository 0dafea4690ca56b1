#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/graph/LayerManager.h"

namespace vantorix::test {
namespace {

using scene::LayerManager;
using Translation = std::map<int, int>;

TEST(LayerManager, StartsWithSixLayersAndRegistersWhatIsAskedFor) {
    LayerManager layers;
    EXPECT_EQ(layers.getLayerID("hidden"), 0);
    EXPECT_EQ(layers.getLayerID("post_render"), 5);
    EXPECT_EQ(layers.getLayerName(6), "");
    EXPECT_EQ(layers.getLayerName(-1), "");
    EXPECT_EQ(layers.getLayerID("foo"), 6);
    EXPECT_EQ(layers.addLayer("foo"), 6);
    EXPECT_EQ(layers.addLayer("bar"), 7);
}

TEST(LayerMerge, DiscardsOrRenamesRepeatedNames) {
    LayerManager discarding;
    EXPECT_EQ(discarding.mergeLayers(boost::make_shared<LayerManager>(), true), Translation());
    LayerManager renaming;
    EXPECT_EQ(renaming.mergeLayers(boost::make_shared<LayerManager>(), false),
              Translation({{0, 7}, {1, 11}, {2, 9}, {3, 6}, {4, 10}, {5, 8}}));
    EXPECT_EQ(renaming.getLayerName(6), "cast_shadow__renamed__");
    EXPECT_EQ(renaming.addLayer("next"), 12);
}

TEST(LayerMerge, AnUnknownNameGetsANewIDAndNoEntry) {
    LayerManager layers;
    const auto other = boost::make_shared<LayerManager>();
    layers.addLayer("mine");
    layers.addLayer("shared");
    other->addLayer("shared");
    other->addLayer("theirs");
    EXPECT_EQ(layers.mergeLayers(other, true), Translation({{6, 7}}));
    EXPECT_EQ(layers.getLayerID("theirs"), 8);
}

TEST(LayerMerge, ASecondClashUsesUpAnIDThatNoNameHas) {
    LayerManager layers;
    layers.mergeLayers(boost::make_shared<LayerManager>(), false);
    const auto again = layers.mergeLayers(boost::make_shared<LayerManager>(), false);
    EXPECT_EQ(again.at(3), 12);
    EXPECT_EQ(layers.getLayerName(12), "");
    EXPECT_EQ(layers.getLayerID("cast_shadow__renamed__"), 6);
}

TEST(LayerMerge, WithItselfOrNothingEnds) {
    const auto layers = boost::make_shared<LayerManager>();
    EXPECT_EQ(layers->mergeLayers(layers, false).size(), 6u);
    EXPECT_EQ(layers->mergeLayers(nullptr, false), Translation());
    EXPECT_EQ(layers->addLayer("next"), 12);
}

}  // namespace
}  // namespace vantorix::test
