#include "scene/spatial/PickIndex.h"

#include <algorithm>
#include <limits>
#include <tuple>

#include <boost/container/small_vector.hpp>

namespace vantorix::scene {
namespace {

constexpr int curveLevels = 21;  // Three bits each, in 64.
constexpr std::size_t trianglesPerLeaf = 4;
constexpr float infinity = std::numeric_limits<float>::infinity();

/// Rounding moves the ends of a ray's way through a box by less than this.
constexpr float roundingMargin = 1.0000005f;

bool isFinite(const PickIndex::Triangle& triangle) {
    return std::all_of(triangle.positions.begin(), triangle.positions.end(),
                       [](const auto& position) { return position.allFinite(); });
}

Eigen::Vector3f middleOf(const PickIndex::Triangle& triangle) {
    const auto& corners = triangle.positions;
    return corners[0].cwiseMin(corners[1]).cwiseMin(corners[2]) * 0.5f +
           corners[0].cwiseMax(corners[1]).cwiseMax(corners[2]) * 0.5f;
}

/// Two zero bits between any two of the lower 21.
std::uint64_t spread(std::uint64_t bits) {
    bits = (bits | bits << 32) & 0x001f00000000ffffULL;
    bits = (bits | bits << 16) & 0x001f0000ff0000ffULL;
    bits = (bits | bits << 8) & 0x100f00f00f00f00fULL;
    bits = (bits | bits << 4) & 0x10c30c30c30c30c3ULL;
    return (bits | bits << 2) & 0x1249249249249249ULL;
}

std::uint64_t curveKey(const Eigen::Vector3d& place) {
    constexpr double cells = (1 << curveLevels) - 1;
    const auto cell = [&](int axis) {
        return spread(static_cast<std::uint64_t>(std::clamp(place[axis], 0.0, 1.0) * cells));
    };
    return cell(0) | cell(1) << 1 | cell(2) << 2;
}

unsigned int digitAt(std::uint64_t key, int level) {
    return static_cast<unsigned int>(key >> 3 * level) & 7u;
}

bool isUsableRay(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction) {
    return origin.allFinite() && direction.allFinite() && !direction.isZero(0.0f);
}

bool isBefore(const PickIndex::Hit& left, const PickIndex::Hit& right) {
    return std::tie(left.t, left.face, left.secondCorner) <
           std::tie(right.t, right.face, right.secondCorner);
}

}  // namespace

/// What the box tests of one ray have in common.
class PickIndex::Traversal {
public:
    Traversal(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction) : origin_(origin) {
        for (int axis = 0; axis < 3; ++axis) {
            // A ray along a face of a box must not become infinity times zero.
            constexpr float smallest = 1e-30f;
            const float component = direction[axis];
            const float usable =
                std::abs(component) < smallest ? std::copysign(smallest, component) : component;
            inverse_[axis] = 1.0f / usable;
        }
    }

    /// Where the ray enters each child that it meets before @p limit; infinity for the others.
    void enter(const Node& node, float limit, float (&entry)[width]) const {
        float exit[width];
        std::fill_n(entry, width, 0.0f);
        std::fill_n(exit, width, limit);
        for (int axis = 0; axis < 3; ++axis) {
            const bool isReversed = inverse_[axis] < 0.0f;
            const float* const near = isReversed ? node.maximum[axis] : node.minimum[axis];
            const float* const far = isReversed ? node.minimum[axis] : node.maximum[axis];
            const float start = origin_[axis];
            const float inverse = inverse_[axis];
            for (unsigned int i = 0; i < width; ++i) {
                const float in = (near[i] - start) * inverse;
                const float out = (far[i] - start) * inverse;
                entry[i] = in > entry[i] ? in : entry[i];
                exit[i] = out < exit[i] ? out : exit[i];
            }
        }
        for (unsigned int i = 0; i < width; ++i) {
            entry[i] = entry[i] <= exit[i] * roundingMargin ? entry[i] : infinity;
        }
    }

private:
    Eigen::Vector3f origin_;
    Eigen::Vector3f inverse_;
};

PickIndex::PickIndex(std::vector<Triangle> triangles) : triangles_(std::move(triangles)) {
    const auto isUseless = [](const Triangle& triangle) { return !isFinite(triangle); };
    triangles_.erase(std::remove_if(triangles_.begin(), triangles_.end(), isUseless),
                     triangles_.end());
    const auto keys = sortAlongCurve();
    reorder(keys);
    build(keys, {0, keys.size(), curveLevels - 1}, rootFirst_, rootCount_);
}

std::vector<PickIndex::Keyed> PickIndex::sortAlongCurve() const {
    const Box all = boxOf(0, triangles_.size());
    const Eigen::Vector3d origin = all.minimum.cast<double>();
    const Eigen::Vector3d size = all.maximum.cast<double>() - origin;
    std::vector<Keyed> keys(triangles_.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const Eigen::Vector3d place = middleOf(triangles_[i]).cast<double>() - origin;
        // An axis without extent has one cell.
        const auto inBox = place.array() / (size.array() > 0).select(size, 1.0).array();
        keys[i] = {curveKey(inBox), static_cast<std::uint32_t>(i)};
    }
    std::sort(keys.begin(), keys.end(), [](const Keyed& left, const Keyed& right) {
        return std::tie(left.key, left.triangle) < std::tie(right.key, right.triangle);
    });
    return keys;
}

void PickIndex::reorder(const std::vector<Keyed>& keys) {
    std::vector<Triangle> sorted;
    sorted.reserve(keys.size());
    for (const auto& key : keys) sorted.push_back(triangles_[key.triangle]);
    triangles_.swap(sorted);
}

PickIndex::Box PickIndex::build(const std::vector<Keyed>& keys, Range range, std::uint32_t& first,
                                std::uint32_t& count) {
    const std::size_t size = range.end - range.first;
    const auto lastKey = size ? keys[range.end - 1].key : 0;
    // Levels at which all keys agree need no node.
    while (size && range.level >= 0 &&
           digitAt(keys[range.first].key, range.level) == digitAt(lastKey, range.level)) {
        --range.level;
    }
    if (size <= trianglesPerLeaf || range.level < 0) {
        first = static_cast<std::uint32_t>(range.first);
        count = static_cast<std::uint32_t>(size);
        return boxOf(range.first, range.end);
    }
    first = static_cast<std::uint32_t>(nodes_.size());
    count = 0;
    nodes_.emplace_back();
    Box all = boxOf(0, 0);
    std::size_t start = range.first;
    for (unsigned int child = 0; child < width; ++child) {
        std::size_t end = start;
        while (end < range.end && digitAt(keys[end].key, range.level) == child) ++end;
        Box box = boxOf(0, 0);
        std::uint32_t childFirst = 0;
        std::uint32_t childCount = 0;
        if (end > start) box = build(keys, {start, end, range.level - 1}, childFirst, childCount);
        auto& node = nodes_[first];
        for (int axis = 0; axis < 3; ++axis) {
            node.minimum[axis][child] = box.minimum[axis];
            node.maximum[axis][child] = box.maximum[axis];
        }
        node.first[child] = childFirst;
        node.count[child] = childCount;
        all.minimum = all.minimum.cwiseMin(box.minimum);
        all.maximum = all.maximum.cwiseMax(box.maximum);
        start = end;
    }
    return all;
}

PickIndex::Box PickIndex::boxOf(std::size_t first, std::size_t end) const {
    Box box{Eigen::Vector3f::Constant(infinity), Eigen::Vector3f::Constant(-infinity)};
    for (std::size_t i = first; i < end; ++i) {
        for (const auto& position : triangles_[i].positions) {
            box.minimum = box.minimum.cwiseMin(position);
            box.maximum = box.maximum.cwiseMax(position);
        }
    }
    return box;
}

/// Calls @p onHit(hit) for hits in the order in which boxes are met; it returns up to where further
/// hits are of interest.
template <typename OnHit>
void PickIndex::traverse(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction,
                         OnHit onHit) const {
    if (triangles_.empty() || !isUsableRay(origin, direction)) return;
    const Traversal boxes(origin, direction);
    const RayTest ray(origin, direction);
    float limit = std::numeric_limits<float>::max();
    boost::container::small_vector<Step, width* curveLevels> steps = {
        Step{0.0f, rootFirst_, rootCount_}};
    while (!steps.empty()) {
        const Step step = steps.back();
        steps.pop_back();
        if (step.entry > limit * roundingMargin) continue;
        for (std::size_t i = step.first; i < std::size_t{step.first} + step.count; ++i) {
            Hit hit;
            if (!ray.hits(triangles_[i].positions, hit)) continue;
            hit.face = triangles_[i].face;
            hit.secondCorner = triangles_[i].secondCorner;
            limit = onHit(hit);
        }
        if (step.count > 0) continue;
        const Node& node = nodes_[step.first];
        float entry[width];
        boxes.enter(node, limit, entry);
        const std::size_t bottom = steps.size();
        for (unsigned int child = 0; child < width; ++child) {
            if (entry[child] == infinity) continue;
            steps.push_back({entry[child], node.first[child], node.count[child]});
            // Kept sorted, the nearest on top.
            for (std::size_t i = steps.size() - 1;
                 i > bottom && steps[i - 1].entry < steps[i].entry; --i) {
                std::swap(steps[i - 1], steps[i]);
            }
        }
    }
}

bool PickIndex::findNearest(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction,
                            Hit& nearest) const {
    nearest.t = infinity;
    traverse(origin, direction, [&nearest](const Hit& hit) {
        if (nearest.t == infinity || isBefore(hit, nearest)) nearest = hit;
        return nearest.t;
    });
    return nearest.t != infinity;
}

std::vector<PickIndex::Hit> PickIndex::findAll(const Eigen::Vector3f& origin,
                                               const Eigen::Vector3f& direction) const {
    std::vector<Hit> hits;
    traverse(origin, direction, [&hits](const Hit& hit) {
        hits.push_back(hit);
        return std::numeric_limits<float>::max();
    });
    std::sort(hits.begin(), hits.end(), isBefore);
    return hits;
}

}  // namespace vantorix::scene
