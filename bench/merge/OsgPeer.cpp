#include <osg/MatrixTransform>
#include <vector>

#include <benchmark/benchmark.h>

namespace vantorix::bench {
namespace {

osg::ref_ptr<osg::MatrixTransform> makeTree(int count, int shape) {
    std::vector<osg::ref_ptr<osg::MatrixTransform>> nodes;
    for (int i = 0; i < count; ++i) {
        nodes.push_back(new osg::MatrixTransform(osg::Matrix::translate(1, 2, 3)));
        nodes.back()->setName("n" + std::to_string(i));
        if (i > 0) nodes[static_cast<std::size_t>((i - 1) / shape)]->addChild(nodes.back());
    }
    return nodes.front();
}

int countNodes(const osg::Group& group) {
    int count = 1;
    for (unsigned int i = 0; i < group.getNumChildren(); ++i) {
        count += countNodes(*group.getChild(i)->asGroup());
    }
    return count;
}

/// A bare deep copy: nothing is renamed, looked up or announced. Ranges as of mergeScenes.
void osgDeepClone(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const auto source = makeTree(count, static_cast<int>(state.range(1)));
    for (auto _ : state) {
        osg::ref_ptr<osg::Group> copy =
            new osg::MatrixTransform(*source, osg::CopyOp::DEEP_COPY_ALL);
        state.PauseTiming();
        if (countNodes(*copy) != count) state.SkipWithError("wrong number of nodes");
        copy = nullptr;
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(osgDeepClone)
    ->ArgNames({"nodes", "shape"})
    ->ArgsProduct({{5000, 50000}, {8, 1 << 30}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantorix::bench
