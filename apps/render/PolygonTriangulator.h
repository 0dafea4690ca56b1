#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include <Eigen/Core>

namespace vantorix::apps::render {

/// Cuts polygons into triangles with the same winding: convex ones into a fan around their first
/// corner, others ear by ear (Meisters, "Polygons Have Ears", 1975), which is right for every
/// polygon that is flat and does not cross itself. What has no ear becomes a fan.
/// Cost: linear in the corners; a polygon that needs too much search ends as a fan as well.
class PolygonTriangulator {
public:
    using Triangle = std::array<std::size_t, 3>;

    /// Corner numbers of the triangles, two less than there are corners; valid until the next call.
    const std::vector<Triangle>& triangulate(const std::vector<Eigen::Vector3f>& corners);

private:
    bool isConvex() const;
    double turnAt(std::size_t corner) const;
    bool isEar(std::size_t corner);
    void cutEars();
    void cut(std::size_t corner);
    void fan(std::size_t first, std::size_t count);

    std::vector<Eigen::Vector2d> points_;  ///< The corners in a plane where they turn left.
    std::vector<std::size_t> previous_, next_;
    std::vector<Triangle> triangles_;
    std::size_t tests_ = 0;  ///< Points that may still be compared with a triangle.
};

}  // namespace vantorix::apps::render
