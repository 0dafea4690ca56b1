#include "apps/render/Framing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <Eigen/Geometry>

namespace vantorix::apps::render {
namespace {

using Eigen::Matrix4d;
using Eigen::Vector3d;

constexpr double degrees = 3.14159265358979323846 / 180.0;
constexpr double framingFov = 35.0;
constexpr double margin = 1.06;

/// A turned and moved eye: @p right, @p up and @p back are its axes in the world.
Matrix4d viewOf(const Vector3d& right, const Vector3d& up, const Vector3d& back,
                const Vector3d& position) {
    Matrix4d view = Matrix4d::Identity();
    view.topLeftCorner<3, 3>() << right.transpose(), up.transpose(), back.transpose();
    view.topRightCorner<3, 1>() = -(view.topLeftCorner<3, 3>() * position);
    return view;
}

Matrix4d perspective(double tanHalfFov, double aspect, double zNear, double zFar) {
    Matrix4d projection = Matrix4d::Zero();
    projection(0, 0) = 1.0 / (tanHalfFov * aspect);
    projection(1, 1) = 1.0 / tanHalfFov;
    projection(2, 2) = (zFar + zNear) / (zNear - zFar);
    projection(2, 3) = 2.0 * zFar * zNear / (zNear - zFar);
    projection(3, 2) = -1.0;
    return projection;
}

Matrix4d orthographic(double halfHeight, double aspect, double zNear, double zFar) {
    Matrix4d projection = Matrix4d::Identity();
    projection(0, 0) = 1.0 / (halfHeight * aspect);
    projection(1, 1) = 1.0 / halfHeight;
    projection(2, 2) = 2.0 / (zNear - zFar);
    projection(2, 3) = (zFar + zNear) / (zNear - zFar);
    return projection;
}

/// A direction that is given for a world with y up and z to the viewer.
Vector3d toWorld(const Vector3d& v, int upAxis) {
    if (upAxis == 0) return {v.y(), -v.x(), v.z()};
    if (upAxis == 2) return {v.x(), -v.z(), v.y()};
    return v;
}

Vector3d cornerOf(const Box& box, int corner) {
    return {(corner & 1 ? box.most : box.least).x(), (corner & 2 ? box.most : box.least).y(),
            (corner & 4 ? box.most : box.least).z()};
}

/// Far inside of what single precision can hold.
bool isSensible(double length) { return length > 1e-30 && length < 1e30; }

/// Lengths of a lens are those of the node that it stands at.
Lens scaled(Lens lens, const Matrix4d& world) {
    const double depth = world.block<3, 1>(0, 2).stableNorm();
    const double height = world.block<3, 1>(0, 1).stableNorm();
    lens.zNear *= depth;
    lens.zFar *= depth;
    if (lens.orthographic) lens.yFov *= height;
    return lens;
}

Lens usable(Lens lens) {
    const Lens standard;
    if (!isSensible(lens.yFov)) lens.yFov = lens.orthographic ? 1.0 : standard.yFov;
    if (!lens.orthographic) lens.yFov = std::min(lens.yFov, 170.0);
    const bool mayStandBehind = lens.orthographic && isSensible(-lens.zNear);
    if (!isSensible(lens.zNear) && !mayStandBehind) lens.zNear = standard.zNear;
    if (!isSensible(lens.zFar) || lens.zFar <= lens.zNear) {
        lens.zFar = std::abs(lens.zNear) * 1e5;
    }
    return lens;
}

}  // namespace

bool Box::isUsable() const {
    return least.allFinite() && most.allFinite() && (least.array() <= most.array()).all() &&
           (most - least).allFinite();
}

Box boundsOf(const DrawList& list) {
    const double infinity = std::numeric_limits<double>::infinity();
    Box box{Vector3d::Constant(infinity), Vector3d::Constant(-infinity)};
    for (const auto& item : list.items) {
        for (const auto& corner : *item.corners) {
            const Eigen::Vector4d position(corner.position[0], corner.position[1],
                                           corner.position[2], 1.0);
            const Vector3d placed = (item.world * position).head<3>();
            if (!placed.allFinite()) continue;
            box.least = box.least.cwiseMin(placed);
            box.most = box.most.cwiseMax(placed);
        }
    }
    return box.isUsable() ? box : Box();
}

Viewpoint frame(const Box& box, int upAxis, double aspect) {
    const Vector3d back = toWorld(Vector3d(0.55, 0.4, 1.0).normalized(), upAxis);
    const Vector3d right = toWorld({0, 1, 0}, upAxis).cross(back).normalized();
    const Vector3d up = back.cross(right);
    const Vector3d centre = box.least + (box.most - box.least) * 0.5;
    const double tanHalf = std::tan(framingFov * 0.5 * degrees);

    double distance = 0.0;
    double reach = 0.0;  // Of the box along the line of sight, to either side of its centre.
    for (int i = 0; i < 8; ++i) {
        const Vector3d corner = cornerOf(box, i) - centre;
        const double across = std::max(std::abs(corner.dot(right)) / (tanHalf * aspect),
                                       std::abs(corner.dot(up)) / tanHalf);
        distance = std::max(distance, across + corner.dot(back));
        reach = std::max(reach, corner.dot(back));
    }
    distance = distance > 0.0 ? distance * margin : 1.0;
    const double zNear = std::max((distance - reach) * 0.9, distance * 1e-3);

    Viewpoint viewpoint;
    viewpoint.view = viewOf(right, up, back, centre + back * distance);
    viewpoint.projection = perspective(tanHalf, aspect, zNear, (distance + reach) * 1.1);
    return viewpoint;
}

Viewpoint throughLens(const Lens& given, const Matrix4d& world, double aspect) {
    const Lens lens = usable(scaled(given, world));
    Vector3d back = world.block<3, 1>(0, 2).stableNormalized();
    if (!back.allFinite() || back.isZero()) back = Vector3d::UnitZ();
    Vector3d right = world.block<3, 1>(0, 1).cross(back).stableNormalized();
    if (!right.allFinite() || right.isZero()) right = back.unitOrthogonal();
    Vector3d position = world.block<3, 1>(0, 3);
    if (!position.allFinite()) position.setZero();

    Viewpoint viewpoint;
    viewpoint.orthographic = lens.orthographic;
    viewpoint.view = viewOf(right, back.cross(right), back, position);
    viewpoint.projection =
        lens.orthographic
            ? orthographic(lens.yFov, aspect, lens.zNear, lens.zFar)
            : perspective(std::tan(lens.yFov * 0.5 * degrees), aspect, lens.zNear, lens.zFar);
    return viewpoint;
}

}  // namespace vantorix::apps::render
