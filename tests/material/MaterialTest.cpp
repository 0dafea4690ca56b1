#include <sstream>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/material/Evaluator.h"
#include "scene/material/Image.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"
#include "scene/material/Render.h"

namespace vantorix::scene {
namespace {

template <class Value>
std::string printed(const Value& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

/// A material with the parameters "tint" and "map", added in this order.
struct Painted : ::testing::Test {
    boost::shared_ptr<MaterialParameter> tint =
        boost::make_shared<MaterialParameter>("tint", "float3", "1 0 0");
    boost::shared_ptr<MaterialParameter> map =
        boost::make_shared<MaterialParameter>("map", "texture", "image1");
    Material material{"paint", "phong"};

    Painted() {
        material.addMaterialParameter(tint);
        material.addMaterialParameter(map);
    }
};

TEST_F(Painted, ParametersStandInReverseOrderOfAddition) {
    material.addMaterialParameter(nullptr);
    ASSERT_EQ(material.getParametersCount(), 2);
    EXPECT_EQ(material.getParameterAt(0), map);
    EXPECT_EQ(material.getParameterAt(1), tint);
    EXPECT_FALSE(material.getParameterAt(2));
}

TEST_F(Painted, TheLaterOfTwoParametersOfOneNameIsFound) {
    const auto second = boost::make_shared<MaterialParameter>("tint", "float3", "0 1 0");
    material.addMaterialParameter(second);
    EXPECT_EQ(material.getParameterByName("tint"), second);
    EXPECT_FALSE(material.getParameterByName("Tint"));
}

TEST_F(Painted, TextsListIdsAndParameters) {
    EXPECT_EQ(material.toString(),
              "Material ID: paint, Effect ID: phong\n"
              " Param 0: map, texture, image1\n"
              " Param 1: tint, float3, 1 0 0\n");
    EXPECT_EQ(printed(*tint), "  Parameter Name: tint, Value: 1 0 0\n");
    EXPECT_EQ(printed(material),
              " Material ID: paint, effect ID: phong\n  Material Parameters: \n" +
                  printed(map.get()) + printed(tint.get()));
}

TEST_F(Painted, EmptyParametersAreSteppedOver) {
    material.setMaterialParameters({nullptr, tint});
    EXPECT_EQ(material.getParameterByName("tint"), tint);
    EXPECT_EQ(material.toString(),
              "Material ID: paint, Effect ID: phong\n Param 1: tint, float3, 1 0 0\n");
    EXPECT_NE(printed(material), "");
}

TEST_F(Painted, OnlyTheTechniqueCanBeCleared) {
    material.setTechnique("fast");
    EXPECT_EQ(material.getTechnique(), "fast");
    material.setTechnique("");
    material.setMaterialID("");
    material.setEffectID("");
    EXPECT_EQ(material.getTechnique(), "");
    EXPECT_EQ(material.getMaterialID(), "paint");
    EXPECT_EQ(material.getEffectID(), "phong");
}

TEST_F(Painted, CloneSharesParametersAndForgetsTheTechnique) {
    material.setTechnique("fast");
    const Material copy = material;
    const Material clone = material.clone();
    EXPECT_EQ(copy.getTechnique(), "fast");
    EXPECT_EQ(clone.getTechnique(), "");
    clone.getParameterByName("tint")->setValue("0 0 1");
    EXPECT_EQ(tint->getValue(), "0 0 1");
}

TEST(Image, KeepsItsId) {
    Image image("id", "file.png", "name");
    image.setID("other");
    image.setName("other name");
    image.setFileName("other.png");
    EXPECT_EQ(image.getID(), "id");
    EXPECT_EQ(image.getName(), "other name");
    EXPECT_EQ(image.getFilename(), "other.png");
}

TEST(Evaluator, HoldsItsPassesInOrder) {
    const auto shadow = boost::make_shared<Material>("shadow", "depth");
    const std::list<std::string> layers = {"visible", "casters"};
    Evaluator evaluator("deferred");
    evaluator.addRender(boost::make_shared<Render>(nullptr, layers, shadow));
    evaluator.addRender(nullptr);
    evaluator.addRender(boost::make_shared<Render>(nullptr, std::list<std::string>(), nullptr));

    ASSERT_EQ(evaluator.getRendersCount(), 2u);
    EXPECT_EQ(evaluator.getRenderAt(0)->getLayers(), layers);
    EXPECT_EQ(evaluator.getRenderAt(0)->getMaterial(), shadow);
    EXPECT_TRUE(evaluator.getRenderAt(1)->getLayers().empty());
    EXPECT_FALSE(evaluator.getRenderAt(2));
    EXPECT_FALSE(evaluator.getRenderAt(3));
}

}  // namespace
}  // namespace vantorix::scene
