#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/HeapBytes.h"
#include "bench/graph/PeakSize.h"
#include "bench/graph/TreePlan.h"

/// The cases that several libraries go through. What stands behind each is a class Tree:
///
///     Tree()                           an empty scene
///     build(plan)                      makes the nodes of the plan, with ID, name and pose
///     buildBare(plan)                  the same nodes as the library makes them, at no place
///     move(node, position)             replaces the translation below the parent
///     update()                         what the library wants before worlds are read, if anything
///     world(node)                      the world matrix, as the library hands it out
///     worldAlong(path)                 the world matrix of the last node when only nodes of the
///                                      path, each the child of the one before, have moved
///     matrix(node)                     the world matrix as Eigen's, for the check
///     holdNodes()                      keeps the nodes alive when they are removed
///     remove(parent, child), childCount(node)
///     release()                        drops the whole tree
///
/// Nodes are numbers of the plan. Not every library has all of them.
namespace vantorix::bench {

/// Registers @p run(state, shape), with the number of nodes as range(0), under
/// "NAME/SHAPE/NODES".
template <class Case>
void addCases(const std::string& name, Case run, std::initializer_list<Shape> shapes,
              std::initializer_list<int> sizes) {
    for (const auto shape : shapes) {
        const auto title = name + "/" + nameOf(shape);
        auto* const cases = benchmark::RegisterBenchmark(title.c_str(), run, shape);
        for (const int size : sizes) cases->Arg(size);
    }
}

inline TreePlan planFor(const benchmark::State& state, Shape shape) {
    return TreePlan(shape, static_cast<int>(state.range(0)));
}

inline void countItems(benchmark::State& state, std::int64_t itemsPerIteration) {
    state.SetItemsProcessed(state.iterations() * itemsPerIteration);
}

/// The place of node @p node in the given round.
inline Eigen::Vector3f placeOf(const TreePlan& plan, int node, const Eigen::Vector3f& offset) {
    return plan.poses[static_cast<std::size_t>(node)].position + offset;
}

/// Chains of a thousand turns drift apart, by quaternions or by matrices.
constexpr float worldTolerance = 5e-2f;

template <class Tree>
void checkWorlds(benchmark::State& state, const TreePlan& plan, Tree& tree,
                 const Eigen::Vector3f& offset) {
    const auto expected = worldMatrices(plan, offset);
    for (int node = 0; node < plan.size(); ++node) {
        if (differenceOf(tree.matrix(node), expected[static_cast<std::size_t>(node)]) >
            worldTolerance) {
            state.SkipWithError("wrong world matrix");
        }
    }
}

template <class Tree>
void buildTree(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    for (auto _ : state) {
        state.PauseTiming();
        auto tree = std::make_unique<Tree>();
        state.ResumeTiming();
        tree->build(plan);
        state.PauseTiming();
        checkWorlds(state, plan, *tree, Eigen::Vector3f::Zero());
        tree.reset();
        state.ResumeTiming();
    }
    countItems(state, plan.size());
}

template <class Tree>
void releaseTree(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    for (auto _ : state) {
        state.PauseTiming();
        auto tree = std::make_unique<Tree>();
        tree->build(plan);
        state.ResumeTiming();
        tree->release();
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    countItems(state, plan.size());
}

/// The counter is what a tree of nodes without pose and name takes, ready for look-ups.
template <class Tree>
void holdBareTree(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    for (auto _ : state) {
        Tree tree;
        const double before = heapBytes();
        tree.buildBare(plan);
        state.counters["bytesPerNode"] = (heapBytes() - before) / plan.size();
        if (differenceOf(tree.matrix(plan.size() - 1), Eigen::Matrix4f::Identity()) > 0.0f) {
            state.SkipWithError("wrong world matrix");
        }
    }
    countItems(state, plan.size());
}

template <class Tree>
void buildPeak(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    for (auto _ : state) {
        Tree tree;
        if (!restartPeak()) return state.SkipWithError("the system tells no peak");
        tree.build(plan);
        state.counters["peakPerNode"] = peakBytes() / plan.size();
        checkWorlds(state, plan, tree, Eigen::Vector3f::Zero());
    }
    countItems(state, plan.size());
}

/// All nodes move, then all world matrices are read.
template <class Tree>
void moveAllNodes(benchmark::State& state, Tree& tree, const TreePlan& plan) {
    Eigen::Vector3f offset = Eigen::Vector3f::Zero();
    for (auto _ : state) {
        offset.x() = 1.0f - offset.x();
        for (int node = 0; node < plan.size(); ++node) tree.move(node, placeOf(plan, node, offset));
        tree.update();
        for (int node = 0; node < plan.size(); ++node) benchmark::DoNotOptimize(tree.world(node));
    }
    checkWorlds(state, plan, tree, offset);
    countItems(state, plan.size());
}

template <class Tree>
void moveAll(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    Tree tree;
    tree.build(plan);
    moveAllNodes(state, tree, plan);
}

/// The first node of @p path moves, the world matrix of the last one is read.
template <class Tree>
void moveOneReadOne(benchmark::State& state, const TreePlan& plan, const std::vector<int>& path) {
    Tree tree;
    tree.build(plan);
    tree.update();
    for (int node = 0; node < plan.size(); ++node) benchmark::DoNotOptimize(tree.world(node));
    Eigen::Vector3f offset = Eigen::Vector3f::Zero();
    for (auto _ : state) {
        offset.x() = 1.0f - offset.x();
        tree.move(path.front(), placeOf(plan, path.front(), offset));
        benchmark::DoNotOptimize(tree.worldAlong(path));
    }
    tree.move(path.front(), placeOf(plan, path.front(), Eigen::Vector3f::Zero()));
    tree.worldAlong(path);
    const auto expected = worldMatrices(plan, Eigen::Vector3f::Zero());
    const int last = path.back();
    if (differenceOf(tree.matrix(last), expected[static_cast<std::size_t>(last)]) >
        worldTolerance) {
        state.SkipWithError("wrong world matrix");
    }
    countItems(state, 1);
}

template <class Tree>
void moveLeaf(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    moveOneReadOne<Tree>(state, plan, {plan.size() - 1});
}

/// A node near the root moves and a leaf is read, which is at the lowest level.
template <class Tree>
void moveBranch(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    std::vector<int> longest;
    for (int node = 1; node < plan.size(); ++node) {
        auto path = plan.pathFromNearRoot(node);
        if (path.size() > longest.size()) longest = std::move(path);
    }
    moveOneReadOne<Tree>(state, plan, longest);
}

/// Every second child of the root goes.
template <class Tree>
void removeHalf(benchmark::State& state, Shape shape) {
    const auto plan = planFor(state, shape);
    const int removed = plan.size() / 2;
    for (auto _ : state) {
        state.PauseTiming();
        auto tree = std::make_unique<Tree>();
        tree->build(plan);
        tree->holdNodes();
        state.ResumeTiming();
        for (int i = 0; i < removed; ++i) tree->remove(0, 2 * i + 1);
        state.PauseTiming();
        if (tree->childCount(0) != plan.size() - 1 - removed) {
            state.SkipWithError("wrong number of children");
        }
        tree.reset();
        state.ResumeTiming();
    }
    countItems(state, removed);
}

/// A Finder is made from a plan and answers contains(id).
template <class Finder>
void findByID(benchmark::State& state, Question question) {
    const auto plan = planFor(state, TREE8);
    const auto ids = askedIDs(plan, question);
    const auto asked = static_cast<std::int64_t>(ids.size());
    const Finder finder(plan);
    std::int64_t found = 0;
    for (auto _ : state) {
        for (const auto& id : ids) found += finder.contains(id) ? 1 : 0;
    }
    if (found != (question == MISSING ? 0 : state.iterations() * asked)) {
        state.SkipWithError("wrong answers");
    }
    countItems(state, asked);
}

/// Registers NAME/last, NAME/missing and NAME/random.
template <class Finder>
void addFindCases(const std::string& name) {
    constexpr int nodes = 100000;
    benchmark::RegisterBenchmark((name + "/last").c_str(), findByID<Finder>, LAST)->Arg(nodes);
    benchmark::RegisterBenchmark((name + "/missing").c_str(), findByID<Finder>, MISSING)
        ->Arg(nodes);
    benchmark::RegisterBenchmark((name + "/random").c_str(), findByID<Finder>, RANDOM)->Arg(nodes);
}

}  // namespace vantorix::bench
