// Lets the memory of the program end at one allocation after the other while a worker's answer
// becomes a scene.

#include <cerrno>
#include <sys/wait.h>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core_api/logger/Logger.h"

#include "apps/import/ModelImporter.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"
#include "tests/reliability/FailingAllocation.h"
#include "tests/reliability/SceneCheck.h"
#include "tests/support/TemporaryFolder.h"

using namespace vantorix;
using apps::import::ImportResult;
using apps::import::ModelImporter;
using ::testing::Each;
using ::testing::IsEmpty;

namespace {

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

void expectNoChild() {
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

void expectWhole(const boost::shared_ptr<scene::SceneManager>& scene) {
    EXPECT_THAT(test::findTreeFaults(*scene), IsEmpty());
    // Influences of the sample do not add up to 1.
    EXPECT_THAT(test::findLibraryFaults(*scene), Each("weights of another vertex"));
    EXPECT_THAT(test::findUseFaults(scene), IsEmpty());
}

struct ImportMemory : ::testing::Test {
    void SetUp() override { core::logger::Logger::active = false; }
    void TearDown() override { core::logger::Logger::active = true; }

    ImportResult import(const boost::shared_ptr<scene::SceneManager>& scene) const {
        return importer.importFile(file, scene);
    }

    test::TemporaryFolder folder;
    const std::string file = folder.write("sample.obj", "x");
    const std::string worker = std::filesystem::read_symlink("/proc/self/exe")
                                   .replace_filename("vantorix-import-worker-double")
                                   .string();
    const ModelImporter importer{{{}, worker}};
};

}  // namespace

TEST_F(ImportMemory, AModelIsThereAsAWholeOrNotAtAll) {
    const auto descriptors = openDescriptors();
    const auto measured = boost::make_shared<scene::SceneManager>(nullptr);
    test::failAllocation(0);
    import(measured);
    const long total = test::allocationsSinceThen();
    const auto nodes = measured->getNodeArray().size();

    int refused = 0;
    for (long number = 1;; number = test::nextNumber(number, total)) {
        SCOPED_TRACE("allocation " + std::to_string(number) + " of " + std::to_string(total));
        const auto scene = boost::make_shared<scene::SceneManager>(nullptr);
        scene->getRoot();
        ImportResult result;
        const bool failed = test::failAt(number, [&] { result = import(scene); });
        if (!failed) break;
        if (result.status != ImportResult::DONE) {
            ++refused;
            EXPECT_EQ(result.status, ImportResult::LIMIT_MET);
            EXPECT_EQ(result.limit.name, "memory");
            EXPECT_EQ(result.reason, file + ": not enough memory");
            EXPECT_FALSE(result.root);
            EXPECT_EQ(scene->getRoot()->getChildCount(), 0u);
        }
        expectWhole(scene);
        if (result.status != ImportResult::DONE) {
            EXPECT_EQ(import(scene).status, ImportResult::DONE);
        }
        EXPECT_EQ(scene->getNodeArray().size(), nodes);
        expectNoChild();
        EXPECT_EQ(openDescriptors(), descriptors);
        if (HasFailure()) return;
    }
    EXPECT_GT(refused, 100);
}
