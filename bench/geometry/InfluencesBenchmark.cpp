#include <vector>

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include "scene/controller/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"

namespace vantorix::bench {
namespace {

constexpr unsigned int influencesPerVertex = 3;

/// Influence i of vertex v is joint v + i, with weight number v + i of 100 different ones.
scene::Skin makeSkin(unsigned int vertices) {
    scene::Skin skin(boost::make_shared<scene::Mesh>("skinned", ""));
    const auto weights = boost::make_shared<scene::Stream>("weights", 1, false);
    for (int i = 0; i < 100; ++i) weights->values.push_back(static_cast<float>(i) / 100.0f);
    weights->count = 100;
    skin.setStreams({weights});
    skin.setVertexWeightsInput("WEIGHT", "weights");
    std::vector<int> v;
    for (unsigned int vertex = 0; vertex < vertices; ++vertex) {
        for (unsigned int i = 0; i < influencesPerVertex; ++i) {
            v.push_back(static_cast<int>(vertex + i));
            v.push_back(static_cast<int>((vertex + i) % 100));
        }
    }
    skin.setVCount(std::vector<unsigned int>(vertices, influencesPerVertex));
    skin.setV(v);
    return skin;
}

/// Near the last one, over and over: nothing of what is read leaves the memory next to the
/// processor.
struct NearTheEnd {
    unsigned int next(unsigned int vertices) { return vertices - 1 - (++asked % 64); }
    unsigned int asked = 0;
};

/// All of them in order, as who moves a mesh by its skin asks.
struct InSequence {
    unsigned int next(unsigned int vertices) { return asked++ % vertices; }
    unsigned int asked = 0;
};

/// range(0): vertices. Items are queries.
template <typename Order>
void influencesOfVertex(benchmark::State& state) {
    const auto vertices = static_cast<unsigned int>(state.range(0));
    const auto skin = makeSkin(vertices);
    std::vector<int> joints;
    std::vector<float> weights;
    Order order;
    for (auto _ : state) {
        const unsigned int vertex = order.next(vertices);
        joints.clear();
        weights.clear();
        skin.getVertexJointsAndWeights(vertex, joints, weights);
        benchmark::DoNotOptimize(weights.data());
        if (joints.size() != influencesPerVertex || joints[2] != static_cast<int>(vertex + 2)) {
            state.SkipWithError("wrong influences");
        }
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_TEMPLATE(influencesOfVertex, NearTheEnd)
    ->Name("influencesOfVertex")
    ->Arg(1000)
    ->Arg(100000)
    ->Arg(1000000);
BENCHMARK_TEMPLATE(influencesOfVertex, InSequence)
    ->Name("influencesInSequence")
    ->Arg(1000)
    ->Arg(1000000);

/// The same loop over plain arrays: the limit.
template <typename Order>
void influencesFromPrefixSums(benchmark::State& state) {
    const auto vertices = static_cast<unsigned int>(state.range(0));
    const auto skin = makeSkin(vertices);
    const auto& v = skin.getV();
    const auto& values = static_cast<const scene::Stream&>(*skin.getStreams().front()).values;
    std::vector<std::size_t> first(vertices + std::size_t{1});
    for (std::size_t i = 0; i < vertices; ++i) first[i + 1] = first[i] + skin.getVCount()[i];
    std::vector<int> joints;
    std::vector<float> weights;
    Order order;
    for (auto _ : state) {
        const std::size_t vertex = order.next(vertices);
        joints.clear();
        weights.clear();
        for (std::size_t i = first[vertex]; i < first[vertex + 1]; ++i) {
            joints.push_back(v[2 * i]);
            weights.push_back(values[static_cast<std::size_t>(v[2 * i + 1])]);
        }
        benchmark::DoNotOptimize(weights.data());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_TEMPLATE(influencesFromPrefixSums, NearTheEnd)
    ->Name("influencesFromPrefixSums")
    ->Arg(100000);
BENCHMARK_TEMPLATE(influencesFromPrefixSums, InSequence)
    ->Name("influencesFromPrefixSumsInSequence")
    ->Arg(1000)
    ->Arg(1000000);

}  // namespace
}  // namespace vantorix::bench
