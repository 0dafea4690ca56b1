#include "scene/geometry/BoxRules.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace vantorix::scene {
namespace {

// Four positions fill three registers of four lanes, each of which keeps its component.
using Lanes __attribute__((vector_size(16))) = float;
using Flags __attribute__((vector_size(16))) = std::int32_t;
constexpr std::size_t laneCount = 4;
constexpr std::size_t blockSize = 3 * laneCount;

Lanes load(const float* values) {
    Lanes lanes;
    std::memcpy(&lanes, values, sizeof(lanes));
    return lanes;
}

/// Values for which the order of the positions matters: NaN, and -0.0 among zeros.
Flags findOrdered(Lanes values) {
    constexpr std::int32_t sign = std::numeric_limits<std::int32_t>::min();
    Flags bits;
    std::memcpy(&bits, &values, sizeof(bits));
    // NOLINTNEXTLINE(misc-redundant-expression): only a NaN differs from itself.
    return (values != values) | (bits == sign);
}

/// Extends @p corners by whole blocks; false when the lanes, which see the positions in another
/// order, may not stand for them.
template <typename Rule>
bool extendLanes(std::array<Lanes, 3>& corners, const float* values, std::size_t blocks) {
    Flags ordered{};
    for (std::size_t block = 0; block < blocks; ++block, values += blockSize) {
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Lanes samples = load(values + i * laneCount);
            corners[i] = Rule::pick(corners[i], samples);
            ordered |= findOrdered(samples);
        }
    }
    return (ordered[0] | ordered[1] | ordered[2] | ordered[3]) == 0;
}

}  // namespace

template <typename Rule>
void extend(Eigen::Vector3f& corner, const float* positions, std::size_t count) {
    const std::size_t blocks = count / laneCount;
    std::size_t done = 0;
    if (blocks > 0) {
        std::array<Lanes, 3> lanes = {load(positions), load(positions + 4), load(positions + 8)};
        if (extendLanes<Rule>(lanes, positions, blocks)) {
            std::array<float, blockSize> samples{};
            std::memcpy(samples.data(), lanes.data(), sizeof(samples));
            for (std::size_t i = 0; i < blockSize; i += 3) {
                extend<Rule>(corner, Eigen::Map<const Eigen::Vector3f>(samples.data() + i));
            }
            done = blocks * laneCount;
        }
    }
    for (std::size_t i = done; i < count; ++i) {
        extend<Rule>(corner, Eigen::Map<const Eigen::Vector3f>(positions + i * 3));
    }
}

template void extend<LowerBound>(Eigen::Vector3f& corner, const float* positions,
                                 std::size_t count);
template void extend<UpperBound>(Eigen::Vector3f& corner, const float* positions,
                                 std::size_t count);

void requireSampleSize(std::size_t size) {
    if (size > 3) throw std::out_of_range("invalid vector<T> subscript");
}

}  // namespace vantorix::scene
