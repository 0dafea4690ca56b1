#pragma once

#include <cmath>

#include <Eigen/Core>
#include <Eigen/Geometry>

namespace vantorix::scene {

/// The separating-axis test of Akenine-Moeller, "Fast 3D Triangle-Box Overlap Testing" (2001), in
/// parts, so that who tests many boxes can share some of them. The parts make the same comparisons
/// on the same floats whoever calls them.
class TriangleBoxOverlap {
    using Vector = Eigen::Vector3f;

public:
    /// The triangle p1, p2, p3 seen from the centre of a box with half extents @p half.
    TriangleBoxOverlap(const Vector& p1, const Vector& p2, const Vector& p3, const Vector& center,
                       const Vector& half)
        : q0_(p1 - center), q1_(p2 - center), q2_(p3 - center), half_(half) {}

    /// Whether a box axis separates them: three coordinates seen from the centre of the box.
    static bool isApartOnAxis(float a, float b, float c, float half) {
        const float smaller = a < b ? a : b;
        const float larger = a < b ? b : a;
        return (c < smaller ? c : smaller) > half || (c > larger ? c : larger) < -half;
    }
    bool isApartOnBoxAxes() const {
        for (int axis = 0; axis < 3; ++axis) {
            if (isApartOnAxis(q0_[axis], q1_[axis], q2_[axis], half_[axis])) return true;
        }
        return false;
    }

    /// What is left when no box axis separates them.
    bool overlapsOnOtherAxes() const {
        const Vector f0 = q1_ - q0_;
        const Vector f1 = q2_ - q1_;
        return !isApartAcrossEdge(f0, q0_, q2_) && !isApartAcrossEdge(f1, q0_, q2_) &&
               !isApartAcrossEdge(q0_ - q2_, q0_, q1_) && reachesPlane(f0.cross(f1));
    }

private:
    /// Whether the box lies on one side of what @p a and @p b span on an axis.
    static bool isApart(float a, float b, float radius) {
        const float smaller = a < b ? a : b;
        const float larger = a < b ? b : a;
        return smaller > radius || larger < -radius;
    }

    /// The axes box axis x @p edge. @p a and @p b are vertices that differ on all three.
    bool isApartAcrossEdge(const Vector& edge, const Vector& a, const Vector& b) const {
        for (int axis = 0; axis < 3; ++axis) {
            const int u = (axis + 1) % 3;
            const int v = (axis + 2) % 3;
            const float radius = half_[u] * std::abs(edge[v]) + half_[v] * std::abs(edge[u]);
            const float atA = edge[u] * a[v] - edge[v] * a[u];
            const float atB = edge[u] * b[v] - edge[v] * b[u];
            if (isApart(atA, atB, radius)) return true;
        }
        return false;
    }

    /// Only the half of the test against the corner nearest along the normal, on purpose.
    bool reachesPlane(const Vector& normal) const {
        Vector nearest;
        for (int axis = 0; axis < 3; ++axis) {
            nearest[axis] = (normal[axis] > 0.0f ? -half_[axis] : half_[axis]) - q0_[axis];
        }
        return normal.dot(nearest) <= 0.0f;
    }

    Vector q0_, q1_, q2_, half_;
};

}  // namespace vantorix::scene
