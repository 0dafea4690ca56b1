#include <sys/stat.h>

#include <gtest/gtest.h>

#include "apps/import/TextureFinder.h"
#include "tests/support/TemporaryFolder.h"

using namespace vantorix::apps::import;

TEST(TextureFinder, FindsFilesAsModelsWriteThem) {
    const vantorix::test::TemporaryFolder folder;
    const auto wood = folder.write("model/Textures/Wood.PNG", "w");
    const auto stone = folder.write("model/stone wall.jpg", "s");
    const auto shared = folder.write("shared/metal.png", "m");
    TextureFinder finder(folder.path("model/chair.obj"));

    EXPECT_EQ(finder.find("Textures/Wood.PNG"), wood);
    EXPECT_EQ(finder.find("./textures/wood.png"), folder.path("model/./Textures/Wood.PNG"));
    EXPECT_EQ(finder.find("Textures\\Wood.PNG"), wood);
    EXPECT_EQ(finder.find(wood), wood);
    EXPECT_EQ(finder.find("file://" + wood), wood);
    EXPECT_EQ(finder.find("C:\\Users\\me\\STONE WALL.JPG"), stone);
    EXPECT_EQ(finder.find("/home/me/stone%20wall.jpg"), stone);
    EXPECT_EQ(finder.find("..\\Shared\\Metal.png"), folder.path("model/../shared/metal.png"));
    EXPECT_EQ(TextureFinder(folder.path("model/x.obj")).find(shared), shared);
}

TEST(TextureFinder, FindsRegularFilesOnly) {
    const vantorix::test::TemporaryFolder folder;
    folder.write("model/folder.png/inside", "x");
    ASSERT_EQ(::mkfifo(folder.path("model/pipe.png").c_str(), 0600), 0);
    TextureFinder finder(folder.path("model/chair.obj"));
    const std::string withNul = std::string("folder.png") + '\0' + "/inside";
    for (const std::string name : {"", "none.png", "folder.png", "pipe.png", "/dev/zero", "..", ".",
                                   "%", "%zz", "folder.png/", "//", "\\"}) {
        EXPECT_EQ(finder.find(name), "") << name;
    }
    EXPECT_EQ(finder.find(withNul), "");
    EXPECT_EQ(finder.find(std::string(100000, 'a')), "");
}
