#include <set>

#include <gtest/gtest.h>

#include "apps/import/IdRegistry.h"
#include "apps/import/ImportReport.h"

using namespace vantorix::apps::import;

TEST(IdRegistry, KeepsUsableNamesAndReportsTheOthers) {
    ImportReport report;
    IdRegistry ids("node", report);
    ids.reserve("Node0");
    EXPECT_EQ(ids.take("Cube.001"), "Cube.001");
    EXPECT_EQ(ids.take("Stuhl gr\xc3\xbcn"), "Stuhl gr\xc3\xbcn");
    EXPECT_TRUE(report.getNotes().empty());

    EXPECT_EQ(ids.take("a,b/c\n"), "a_b_c_");
    EXPECT_EQ(ids.take(""), "node");
    EXPECT_EQ(ids.take(""), "node_2");
    EXPECT_EQ(ids.take("Cube.001"), "Cube.001_2");
    EXPECT_EQ(ids.take("Node0"), "Node0_2");
    EXPECT_EQ(report.getNotes(),
              std::vector<std::string>({"node \"a,b/c \": its id is \"a_b_c_\"",
                                        "node without a name: its id is \"node\"",
                                        "node without a name: its id is \"node_2\"",
                                        "node \"Cube.001\": its id is \"Cube.001_2\"",
                                        "node \"Node0\": its id is \"Node0_2\""}));
}

TEST(IdRegistry, NeverGivesAnIdTwice) {
    ImportReport report;
    IdRegistry ids("node", report);
    std::set<std::string> given;
    const char* const names[] = {"", "a", "a_2", "a_2_2", "a,", "a/", "a_", "node", "node_2"};
    for (int round = 0; round < 200; ++round) {
        for (const char* const name : names) {
            const auto id = ids.take(name);
            EXPECT_TRUE(given.insert(id).second) << id;
            EXPECT_EQ(id.find_first_of(",/"), std::string::npos) << id;
        }
    }
}

TEST(IdRegistry, ManyEqualNamesCostNoMoreEach) {
    ImportReport report;
    IdRegistry ids("node", report);
    for (int i = 0; i < 200000; ++i) ids.take("bone");  // Quadratic work would not end in time.
    EXPECT_EQ(ids.take("bone"), "bone_200001");
    EXPECT_EQ(report.getNotes().size() + report.getOmittedCount(), 200000u);
}
