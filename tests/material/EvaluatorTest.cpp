#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/material/Evaluator.h"
#include "scene/material/Material.h"
#include "scene/material/Render.h"

namespace vantorix::scene {
namespace {

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
