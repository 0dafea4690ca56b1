#pragma once

#include <cmath>
#include <random>
#include <string>

#include <benchmark/benchmark.h>

namespace vantorix::bench {

constexpr int keyCount = 100;
constexpr int millisecondsPerKey = 100;
/// Before the last key, whose time as a float lies below its whole milliseconds.
constexpr int lastTime = (keyCount - 1) * millisecondsPerKey - 2;
constexpr int frameLength = 16;
constexpr float radiansPerDegree = 0.017453292f;

/// In seconds.
inline float keyTime(int key) { return static_cast<float>(key * millisecondsPerKey) / 1000.0f; }

/// @name What key k holds: it moves by (k, k, k), turns by k degrees about z, scales by 1 + k / 100
/// @{
inline float keyOffset(int key) { return static_cast<float>(key); }
inline float keyDegrees(int key) { return static_cast<float>(key); }
inline float keyScale(int key) { return 1.0f + static_cast<float>(key) / 100.0f; }
/// @}

/// Whether a world matrix shows @p time in milliseconds, by its z offset and its entry (1, 0).
inline bool isPoseAt(int time, double offset, double sine) {
    const double key = static_cast<double>(time) / millisecondsPerKey;
    return std::abs(offset - key) < 2e-3 * (1 + key) &&
           std::abs(sine - std::sin(key * radiansPerDegree) * (1 + key / 100)) < 2e-3;
}

/// Measures @p Scene, made for range(0) nodes, which are the items. show(time) goes to a time,
/// updates and reads all world matrices; isAt(time) tells whether it worked. The first frame, which
/// finds the nodes, is not measured.
template <class Scene, class NextTime>
void play(benchmark::State& state, NextTime nextTime) {
    Scene scene(static_cast<int>(state.range(0)));
    scene.show(nextTime());
    for (auto _ : state) {
        const int time = nextTime();
        benchmark::DoNotOptimize(scene.show(time));
        if (!scene.isAt(time)) {
            state.SkipWithError("wrong pose");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Scene>
void playFrames(benchmark::State& state) {
    int time = 1;
    play<Scene>(state, [&time] { return time = 1 + (time + frameLength) % lastTime; });
}

template <class Scene>
void playAnyTimes(benchmark::State& state) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> time(1, lastTime);
    play<Scene>(state, [&] { return time(random); });
}

}  // namespace vantorix::bench
