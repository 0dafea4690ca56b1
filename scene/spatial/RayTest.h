#pragma once

#include <array>
#include <cmath>
#include <limits>

#include <Eigen/Core>

namespace vantorix::scene {

/// Tests triangles against one ray without gaps between neighbours: Woop, Benthin and Wald,
/// "Watertight Ray/Triangle Intersection" (2013).
class RayTest {
public:
    struct Hit {
        float t = 0.0f;  ///< In lengths of the direction.
        Eigen::Vector3f barycentric;
    };

    /// @param direction finite, and not zero.
    RayTest(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction) : origin_(origin) {
        direction.cwiseAbs().maxCoeff(&z_);
        x_ = (z_ + 1) % 3;
        y_ = (z_ + 2) % 3;
        if (direction[z_] < 0.0f) std::swap(x_, y_);  // Keeps the winding.
        shear_ = {direction[x_] / direction[z_], direction[y_] / direction[z_],
                  1.0f / direction[z_]};
    }

    /// Both sides count; so does a hit at the origin, but none behind it.
    bool hits(const std::array<Eigen::Vector3f, 3>& triangle, Hit& hit) const {
        const Sheared a = toRaySpace(triangle[0]);
        const Sheared b = toRaySpace(triangle[1]);
        const Sheared c = toRaySpace(triangle[2]);
        const Eigen::Vector3f edges(side(c, b), side(a, c), side(b, a));
        if (edges.minCoeff() < 0.0f && edges.maxCoeff() > 0.0f) return false;
        const float sum = edges.sum();
        if (sum == 0.0f) return false;
        const Eigen::Vector3f barycentric = edges / sum;
        const float t = barycentric.dot(Eigen::Vector3f(a.z, b.z, c.z));
        if (!(t >= 0.0f && t <= std::numeric_limits<float>::max())) return false;
        hit = {t, barycentric};
        return true;
    }

private:
    struct Sheared {
        float x, y, z;
    };

    /// The ray starts at the origin there and runs along z.
    Sheared toRaySpace(const Eigen::Vector3f& position) const {
        const Eigen::Vector3f p = position - origin_;
        return {p[x_] - shear_[0] * p[z_], p[y_] - shear_[1] * p[z_], shear_[2] * p[z_]};
    }

    /// On which side of the edge the ray passes; again in doubles when floats cannot tell.
    static float side(const Sheared& p, const Sheared& q) {
        const float result = p.x * q.y - p.y * q.x;
        if (result != 0.0f) return result;
        return static_cast<float>(double{p.x} * double{q.y} - double{p.y} * double{q.x});
    }

    Eigen::Vector3f origin_;
    Eigen::Vector3f shear_;
    Eigen::Index x_ = 0;
    Eigen::Index y_ = 0;
    Eigen::Index z_ = 0;
};

}  // namespace vantorix::scene
