#include "apps/render/PixelRay.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <Eigen/Geometry>
#include <Eigen/LU>

namespace vantorix::apps::render {
namespace {

using Colour = std::array<std::uint8_t, 4>;

constexpr double ringRadius = 12.0;
constexpr Colour ringColour = {230, 30, 30, 255};
constexpr Colour haloColour = {255, 255, 255, 255};

/// From the unit cube of the projection back to the world.
Eigen::Vector3d unproject(const Eigen::Matrix4d& toWorld, double x, double y, double z) {
    return (toWorld * Eigen::Vector4d(x, y, z, 1.0)).hnormalized();
}

/// What a ring, a dot and a halo around both make of a pixel this far from the middle; null for
/// nothing.
const Colour* markerColour(double distance) {
    const double fromMark = std::min(std::abs(distance - ringRadius), distance);
    if (fromMark <= 1.5) return &ringColour;
    return fromMark <= 3.0 ? &haloColour : nullptr;
}

}  // namespace

WorldRay rayThrough(const Viewpoint& viewpoint, int width, int height, int x, int y) {
    const Eigen::Matrix4d toWorld = (viewpoint.projection * viewpoint.view).inverse();
    const double across = (x + 0.5) / width * 2.0 - 1.0;
    const double up = 1.0 - (y + 0.5) / height * 2.0;
    const Eigen::Vector3d origin = unproject(toWorld, across, up, -1.0);
    return {origin, (unproject(toWorld, across, up, 1.0) - origin).normalized()};
}

std::optional<Eigen::Vector2d> pixelOf(const Viewpoint& viewpoint, int width, int height,
                                       const Eigen::Vector3d& place) {
    const Eigen::Vector4d clip = viewpoint.projection * viewpoint.view * place.homogeneous();
    if (!(clip.w() > 0.0)) return {};
    const Eigen::Vector2d seen = clip.head<2>() / clip.w();
    if (!(seen.cwiseAbs().maxCoeff() <= 1.0)) return {};
    return Eigen::Vector2d((seen.x() + 1.0) / 2.0 * width, (1.0 - seen.y()) / 2.0 * height);
}

void drawMarker(const Eigen::Vector2d& middle, Picture& picture) {
    const int reach = static_cast<int>(ringRadius) + 4;
    const int left = static_cast<int>(middle.x()) - reach;
    const int top = static_cast<int>(middle.y()) - reach;
    for (int y = std::max(top, 0); y <= std::min(top + 2 * reach, picture.height - 1); ++y) {
        for (int x = std::max(left, 0); x <= std::min(left + 2 * reach, picture.width - 1); ++x) {
            const auto* const colour = markerColour((Eigen::Vector2d(x, y) - middle).norm());
            if (colour) std::copy_n(colour->data(), 4, picture.pixel(x, picture.height - 1 - y));
        }
    }
}

}  // namespace vantorix::apps::render
