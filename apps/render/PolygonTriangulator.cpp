#include "apps/render/PolygonTriangulator.h"

#include <Eigen/Geometry>

namespace vantorix::apps::render {
namespace {

/// Enough for every pair of corners of an ordinary polygon; more only for made-up ones.
constexpr std::size_t testsPerCorner = 2048;

double turn(const Eigen::Vector2d& a, const Eigen::Vector2d& b, const Eigen::Vector2d& c) {
    const Eigen::Vector2d ab = b - a, ac = c - a;
    return ab.x() * ac.y() - ab.y() * ac.x();
}

/// The corners in the coordinate plane that shows most of the polygon, turning left as a whole.
void project(const std::vector<Eigen::Vector3f>& corners, std::vector<Eigen::Vector2d>& points) {
    const Eigen::Vector3d first = corners[0].cast<double>();
    Eigen::Vector3d normal = Eigen::Vector3d::Zero();
    for (std::size_t i = 2; i < corners.size(); ++i) {
        normal += (corners[i - 1].cast<double>() - first).cross(corners[i].cast<double>() - first);
    }
    Eigen::Index axis = 0;
    normal.cwiseAbs().maxCoeff(&axis);
    Eigen::Index x = (axis + 1) % 3, y = (axis + 2) % 3;
    if (normal[axis] < 0.0) std::swap(x, y);
    points.clear();
    for (const auto& corner : corners) points.emplace_back(corner[x], corner[y]);
}

}  // namespace

const std::vector<PolygonTriangulator::Triangle>& PolygonTriangulator::triangulate(
    const std::vector<Eigen::Vector3f>& corners) {
    const std::size_t count = corners.size();
    triangles_.clear();
    if (count < 3) return triangles_;
    previous_.resize(count);
    next_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        previous_[i] = (i + count - 1) % count;
        next_[i] = (i + 1) % count;
    }
    project(corners, points_);
    if (count == 3 || isConvex()) {
        fan(0, count);
    } else {
        tests_ = testsPerCorner * count;
        cutEars();
    }
    return triangles_;
}

bool PolygonTriangulator::isConvex() const {
    for (std::size_t i = 0; i < points_.size(); ++i) {
        if (turnAt(i) < 0.0) return false;
    }
    return true;
}

double PolygonTriangulator::turnAt(std::size_t corner) const {
    return turn(points_[previous_[corner]], points_[corner], points_[next_[corner]]);
}

void PolygonTriangulator::cutEars() {
    std::size_t left = points_.size();
    std::size_t corner = 0;
    for (std::size_t passed = 0; left > 3 && passed < left && tests_ > 0; ++passed) {
        const std::size_t following = next_[corner];
        if (isEar(corner)) {
            cut(corner);
            --left;
            passed = 0;
        }
        corner = following;
    }
    fan(corner, left);
}

/// No corner that turns right lies in the triangle with both neighbours.
bool PolygonTriangulator::isEar(std::size_t corner) {
    if (turnAt(corner) <= 0.0) return false;
    const auto& a = points_[previous_[corner]];
    const auto& b = points_[corner];
    const auto& c = points_[next_[corner]];
    for (std::size_t i = next_[next_[corner]]; i != previous_[corner]; i = next_[i]) {
        if (tests_ == 0) return false;
        --tests_;
        const auto& p = points_[i];
        const bool inside = turn(a, b, p) >= 0.0 && turn(b, c, p) >= 0.0 && turn(c, a, p) >= 0.0;
        if (inside && turnAt(i) <= 0.0 && p != a && p != b && p != c) return false;
    }
    return true;
}

void PolygonTriangulator::cut(std::size_t corner) {
    triangles_.push_back({previous_[corner], corner, next_[corner]});
    next_[previous_[corner]] = next_[corner];
    previous_[next_[corner]] = previous_[corner];
}

void PolygonTriangulator::fan(std::size_t first, std::size_t count) {
    std::size_t second = next_[first];
    for (std::size_t i = 2; i < count; ++i, second = next_[second]) {
        triangles_.push_back({first, second, next_[second]});
    }
}

}  // namespace vantorix::apps::render
