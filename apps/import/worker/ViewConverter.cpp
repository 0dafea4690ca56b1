#include "apps/import/worker/ViewConverter.h"

#include <algorithm>
#include <cmath>

#include <assimp/camera.h>
#include <assimp/light.h>

#include "apps/import/worker/AssimpValues.h"
#include "apps/import/worker/NodeNames.h"

namespace vantorix::apps::import {
namespace {

constexpr float degreesPerRadian = 57.29578f;

aiVector3D unitOr(const aiVector3D& vector, const aiVector3D& otherwise) {
    const float length = vector.Length();
    return std::isfinite(length) && length > 0.0f ? vector / length : otherwise;
}

/// A frame at @p position that looks along @p direction through its -z, @p up as near y as can be.
std::array<float, 16> lookingAlong(const aiVector3D& position, const aiVector3D& direction,
                                   const aiVector3D& up) {
    const aiVector3D z = -unitOr(direction, {0, 0, -1});
    const aiVector3D other = std::abs(z.y) < 0.9f ? aiVector3D(0, 1, 0) : aiVector3D(1, 0, 0);
    const aiVector3D x = unitOr(unitOr(up, other) ^ z, unitOr(other ^ z, {1, 0, 0}));
    const aiVector3D y = z ^ x;
    const aiVector3D p = isFinite(position) ? position : aiVector3D();
    return {x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, p.x, p.y, p.z, 1};
}

/// Assimp's angle spans the whole width in practice, whatever its documentation says.
float verticalFieldOfView(const aiCamera& source, bool heightGiven) {
    const float width = source.mHorizontalFOV;
    const float aspect = source.mAspect;
    if (!(aspect > 0.0f) || !std::isfinite(aspect)) return width * degreesPerRadian;
    if (heightGiven) return width / aspect * degreesPerRadian;
    return 2.0f * std::atan(std::tan(width / 2.0f) / aspect) * degreesPerRadian;
}

void convertLens(const aiCamera& source, bool heightGiven, ModelCamera& camera) {
    camera.orthographic =
        source.mOrthographicWidth > 0.0f && std::isfinite(source.mOrthographicWidth);
    if (camera.orthographic) {
        const bool wide = source.mAspect > 0.0f && std::isfinite(source.mAspect);
        camera.yFov = source.mOrthographicWidth / (wide ? source.mAspect : 1.0f);
        if (!std::isfinite(camera.yFov) || camera.yFov <= 0.0f) camera.yFov = 1.0f;
        return;
    }
    const float angle = verticalFieldOfView(source, heightGiven);
    if (angle > 0.0f && angle < 179.0f) camera.yFov = angle;
}

void convertClipping(const aiCamera& source, ModelCamera& camera) {
    const float zNear = source.mClipPlaneNear;
    const float zFar = source.mClipPlaneFar;
    if (std::isfinite(zNear) && zNear > 0.0f) camera.zNear = zNear;
    if (std::isfinite(zFar) && zFar > camera.zNear) camera.zFar = zFar;
    if (camera.zFar <= camera.zNear) camera.zFar = camera.zNear * 10000.0f;
}

ModelLight::Kind kindOf(const aiLight& source) {
    switch (source.mType) {
        case aiLightSource_DIRECTIONAL:
            return ModelLight::DIRECTIONAL;
        case aiLightSource_SPOT:
            return ModelLight::SPOT;
        case aiLightSource_AMBIENT:
            return ModelLight::AMBIENT;
        default:
            return ModelLight::POINT;
    }
}

float finiteOr(float value, float otherwise) { return std::isfinite(value) ? value : otherwise; }

}  // namespace

ViewConverter::ViewConverter(const std::string& format, const NodeNames& nodes,
                             ImportReport& report)
    // Assimp's glTF readers store the height's angle times the aspect ratio.
    : nodes_(nodes), report_(report), cameraHeightsGiven_(format.rfind("glTF", 0) == 0) {}

ModelCamera ViewConverter::convert(const aiCamera& source) {
    ModelCamera camera;
    camera.name = textOf(source.mName);
    camera.placement = {nodeNamed(camera.name, "camera"),
                        lookingAlong(source.mPosition, source.mLookAt, source.mUp)};
    convertLens(source, cameraHeightsGiven_, camera);
    convertClipping(source, camera);
    return camera;
}

ModelLight ViewConverter::convert(const aiLight& source) {
    ModelLight light;
    light.name = textOf(source.mName);
    light.kind = kindOf(source);
    light.placement = {nodeNamed(light.name, "light"),
                       lookingAlong(source.mPosition, source.mDirection, source.mUp)};
    const aiColor3D& color = light.kind == ModelLight::AMBIENT && source.mColorDiffuse.IsBlack()
                                 ? source.mColorAmbient
                                 : source.mColorDiffuse;
    light.color = {finiteOr(color.r, 1), finiteOr(color.g, 1), finiteOr(color.b, 1)};
    light.attenuation = {finiteOr(source.mAttenuationConstant, 1),
                         finiteOr(source.mAttenuationLinear, 0),
                         finiteOr(source.mAttenuationQuadratic, 0)};
    if (light.kind == ModelLight::SPOT) {
        const float angle = finiteOr(source.mAngleOuterCone, 0.0f) * degreesPerRadian;
        light.fallOffAngle = angle > 0.0f ? std::min(angle, 180.0f) : 180.0f;
    }
    return light;
}

std::uint32_t ViewConverter::nodeNamed(const std::string& name, const char* kind) {
    const auto found = nodes_.find(name);
    if (found) return *found;
    report_.add(std::string(kind) + " \"" + name + "\" names no node and is put at the root");
    return 0;
}

}  // namespace vantorix::apps::import
