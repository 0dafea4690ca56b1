#include "scene/spatial/OctreePicking.h"

#include "scene/geometry/Triangle.h"
#include "scene/material/InstanceGeometry.h"
#include "scene/spatial/FaceCorners.h"
#include "scene/spatial/Ray.h"

namespace vantorix::scene {
namespace {

std::vector<PickIndex::Triangle> trianglesOf(const SceneFaces& scene) {
    std::vector<PickIndex::Triangle> triangles;
    triangles.reserve(scene.faces.size() + scene.fans.size());
    for (std::size_t i = 0; i < scene.faces.size(); ++i) {
        const auto* const triangle = dynamic_cast<const Triangle*>(scene.faces[i].get());
        if (!triangle) continue;
        triangles.push_back({FaceCorners::of(*triangle), static_cast<std::uint32_t>(i), 1});
    }
    for (const auto& fan : scene.fans) {
        triangles.push_back({fan.positions, fan.face, fan.secondCorner});
    }
    return triangles;
}

/// How far the ray goes in @p t lengths of @p direction.
float distanceAlong(const Eigen::Vector3f& direction, float t) {
    const float length = direction.norm();
    // The square of a very long or very short direction is no float, that of the way may be one.
    const bool isOrdinary = length > 1e-15f && length < 1e15f;
    return isOrdinary ? t * length : (t * direction).stableNorm();
}

}  // namespace

std::optional<PickHit> OctreePicking::pick(const Ray& ray) {
    PickIndex::Hit hit;
    if (!index().findNearest(ray.getOrigin(), ray.getDirection(), hit)) return {};
    return describe(hit, ray);
}

std::vector<PickHit> OctreePicking::pickAll(const Ray& ray) {
    std::vector<PickHit> hits;
    for (const auto& hit : index().findAll(ray.getOrigin(), ray.getDirection())) {
        hits.push_back(describe(hit, ray));
    }
    return hits;
}

const PickIndex& OctreePicking::index() {
    std::call_once(isMade_, [this] { index_ = PickIndex(trianglesOf(*faces_)); });
    return index_;
}

PickHit OctreePicking::describe(const PickIndex::Hit& hit, const Ray& ray) const {
    const auto& source = faces_->sourceOf(hit.face);
    PickHit result;
    result.distance = distanceAlong(ray.getDirection(), hit.t);
    result.position = ray.getOrigin() + hit.t * ray.getDirection();
    result.barycentric = hit.barycentric;
    result.face = faces_->faces[hit.face];
    result.corners = {0, hit.secondCorner, hit.secondCorner + 1};
    result.primitiveIndex = source.primitiveIndex;
    result.faceIndex = static_cast<unsigned int>(hit.face - source.firstFace);
    result.geometry = source.instance->getGeometry();
    result.node = source.node;
    result.instance = source.instance;
    return result;
}

}  // namespace vantorix::scene
