#include <random>
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

/// range(0): vertices. Asks for those of a vertex near the last one; items are queries.
void influencesOfVertex(benchmark::State& state) {
    const auto vertices = static_cast<unsigned int>(state.range(0));
    const auto skin = makeSkin(vertices);
    std::vector<int> joints;
    std::vector<float> weights;
    unsigned int vertex = 0;
    for (auto _ : state) {
        vertex = vertices - 1 - (vertex + 1) % 64;
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
BENCHMARK(influencesOfVertex)->Arg(1000)->Arg(100000)->Arg(1000000);

/// The same loop over plain arrays: the limit.
void influencesFromPrefixSums(benchmark::State& state) {
    const auto vertices = static_cast<std::size_t>(state.range(0));
    const auto skin = makeSkin(static_cast<unsigned int>(vertices));
    const auto& v = skin.getV();
    const auto& values = static_cast<const scene::Stream&>(*skin.getStreams().front()).values;
    std::vector<std::size_t> first(vertices + 1);
    for (std::size_t i = 0; i < vertices; ++i) first[i + 1] = first[i] + skin.getVCount()[i];
    std::vector<int> joints;
    std::vector<float> weights;
    std::size_t vertex = 0;
    for (auto _ : state) {
        vertex = vertices - 1 - (vertex + 1) % 64;
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
BENCHMARK(influencesFromPrefixSums)->Arg(100000);

}  // namespace
}  // namespace vantorix::bench
