// A skin whose lists cannot be replaced for want of memory stays as it was.

#include <cstdlib>
#include <new>
#include <vector>

#include <gtest/gtest.h>

#include "scene/controller/Skin.h"

namespace {

/// Allocations that this thread may still make; negative for any number.
thread_local int allocationsLeft = -1;

}  // namespace

// Not inlined: the compiler would compare one half of each pair with the built-in other one.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (allocationsLeft == 0) throw std::bad_alloc();
    if (allocationsLeft > 0) --allocationsLeft;
    if (void* const block = std::malloc(size > 0 ? size : 1)) return block;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace vantorix::scene {
namespace {

bool setWithoutMemory(Skin& skin, std::vector<unsigned int> counts) {
    allocationsLeft = 0;
    try {
        skin.setVCount(std::move(counts));
    } catch (const std::bad_alloc&) {
        allocationsLeft = -1;
        return false;
    }
    allocationsLeft = -1;
    return true;
}

TEST(SkinMemory, CountsThatCannotBeSetLeaveTheOldOnes) {
    Skin skin(nullptr);
    skin.setVCount({1, 1});
    skin.setV({7, 0, 8, 0});
    EXPECT_FALSE(setWithoutMemory(skin, std::vector<unsigned int>(5000, 2)));

    EXPECT_EQ(skin.getVCount(), std::vector<unsigned int>({1, 1}));
    std::vector<int> joints;
    std::vector<float> weights;
    for (unsigned int vertex = 0; vertex < 5000; ++vertex) {
        skin.getVertexJointsAndWeights(vertex, joints, weights);
    }
    EXPECT_EQ(joints, std::vector<int>({7, 8}));
}

}  // namespace
}  // namespace vantorix::scene
