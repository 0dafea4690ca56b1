#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "scene/controller/Controller.h"
#include "scene/controller/InstanceController.h"
#include "scene/controller/Morph.h"
#include "scene/controller/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/material/Material.h"

namespace vantorix::scene {
namespace {

TEST(Controller, TakesTheSourceOfTheSkinBeforeThatOfTheMorph) {
    const auto skinned = boost::make_shared<Mesh>("skinned", "");
    const auto morphed = boost::make_shared<Mesh>("morphed", "");
    Controller controller("id", "name");
    EXPECT_FALSE(controller.getSourceGeometry());
    controller.setMorph(boost::make_shared<Morph>(morphed));
    EXPECT_EQ(controller.getSourceGeometry(), morphed);
    controller.setSkin(boost::make_shared<Skin>(skinned));
    EXPECT_EQ(controller.getSourceGeometry(), skinned);
    EXPECT_TRUE(controller.getMorph());
    controller.setSkin(nullptr);
    EXPECT_EQ(controller.getSourceGeometry(), morphed);
}

TEST(Controller, OwnsItsStreamsByValue) {
    Controller controller("id", "name");
    controller.setStreams({Stream("a", 3, false)});
    const Controller copy = controller;
    controller.setStreams({});
    ASSERT_EQ(copy.getStreams().size(), 1u);
    EXPECT_EQ(copy.getStreams()[0].name, "a");
}

TEST(InstanceController, BindsAnInstanceToSkeletons) {
    const auto geometry =
        boost::make_shared<InstanceGeometry>(nullptr, boost::make_shared<Material>("m", "e"));
    const auto controller = boost::make_shared<Controller>("id", "name");
    InstanceController instance(geometry, controller);
    EXPECT_TRUE(instance.getSkeletons().empty());
    instance.setSkeletons({"hips", "tail"});
    EXPECT_EQ(instance.getSkeletons(), std::vector<std::string>({"hips", "tail"}));
    EXPECT_EQ(instance.getInstanceGeometry(), geometry);
    EXPECT_EQ(instance.getController(), controller);
}

}  // namespace
}  // namespace vantorix::scene
