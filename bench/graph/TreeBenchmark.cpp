#include "bench/graph/FlatTree.h"
#include "bench/graph/OwnTree.h"
#include "bench/graph/TreeCases.h"

namespace vantorix::bench {
namespace {

/// A scene in use: its index has been made.
class OwnFinder {
public:
    explicit OwnFinder(const TreePlan& plan) {
        tree_.build(plan);
        tree_.scene()->getNodeByID(plan.ids.front());
    }
    bool contains(const std::string& id) const { return tree_.scene()->getNodeByID(id) != nullptr; }

private:
    OwnTree tree_;
};

const bool treeCasesAdded = [] {
    addCases("build", buildTree<OwnTree>, {TREE8, FLAT, CHAIN}, {10000, 100000});
    addCases("release", releaseTree<OwnTree>, {TREE8, FLAT, CHAIN}, {10000});
    addCases("holdBare", holdBareTree<OwnTree>, {TREE8}, {10000});
    addCases("buildPeak", buildPeak<OwnTree>, {TREE8}, {100000});
    addCases("moveAll", moveAll<OwnTree>, {TREE8, FLAT, CHAIN}, {10000, 100000});
    addCases("limitMoveAll", moveAll<FlatTree>, {TREE8, FLAT, CHAIN}, {10000, 100000});
    addCases("moveLeaf", moveLeaf<OwnTree>, {TREE8, FLAT, CHAIN}, {1000, 10000, 100000});
    addCases("moveBranch", moveBranch<OwnTree>, {TREE8, FLAT}, {1000, 10000, 100000});
    addCases("removeHalf", removeHalf<OwnTree>, {FLAT}, {10000, 100000});
    addFindCases<OwnFinder>("find");
    return true;
}();

}  // namespace
}  // namespace vantorix::bench
