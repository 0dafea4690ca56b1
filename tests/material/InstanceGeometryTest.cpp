#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/geometry/Mesh.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::scene {
namespace {

using MaterialPtr = boost::shared_ptr<Material>;
using Materials = std::vector<MaterialPtr>;

struct Bindings : ::testing::Test {
    MaterialPtr red = boost::make_shared<Material>("red", "phong");
    MaterialPtr blue = boost::make_shared<Material>("blue", "phong");
    InstanceGeometry instance{nullptr, std::map<std::string, MaterialPtr>{{"b", blue}, {"a", red}}};
};

TEST_F(Bindings, AreListedInSymbolOrder) {
    EXPECT_EQ(instance.getMaterialList(), Materials({red, blue}));
    instance.setMaterial("a", blue);
    EXPECT_EQ(instance.getMaterialList(), Materials({blue, blue}));
    EXPECT_EQ(instance.getMaterial("a"), blue);
}

TEST_F(Bindings, KeepTheirSetOfSymbols) {
    instance.setMaterial("c", red);
    instance.setMaterial("a", nullptr);
    EXPECT_EQ(instance.getMaterialMap().size(), 2u);
    EXPECT_EQ(instance.getMaterialList(), Materials({red, blue}));
    EXPECT_FALSE(instance.getMaterial("c"));
}

TEST_F(Bindings, WrittenToTheMapShowInTheListAfterTheNextSetMaterial) {
    instance.getMaterialMap()["c"] = red;
    EXPECT_EQ(instance.getMaterialList().size(), 2u);
    instance.setMaterial("unknown", red);
    EXPECT_EQ(instance.getMaterialList(), Materials({red, blue, red}));
}

TEST_F(Bindings, OfASingleMaterialUseTheDefaultSymbol) {
    const InstanceGeometry single(boost::make_shared<Mesh>("mesh1", ""), red);
    EXPECT_EQ(single.getMaterial("vantorix_material"), red);
    EXPECT_FALSE(single.getMaterial(""));
    EXPECT_EQ(single.toString(), "Instance Geometry for Geometry with ID: mesh1\n");
    EXPECT_EQ(instance.toString(), "Instance Geometry for Geometry with ID: \n");
}

}  // namespace
}  // namespace vantorix::scene
