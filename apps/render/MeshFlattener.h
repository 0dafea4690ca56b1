#pragma once

#include "apps/render/DrawList.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {
class IMeshPrimitive;
class Mesh;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

class SkinPose;

/// What can be drawn of a mesh primitive.
struct FlatPrimitive {
    Corners corners;
    bool hasTransparentCorners = false;
    bool hasTexCoords = false;  ///< Without, a texture would show one of its pixels everywhere.
};

/// The faces of @p primitive as triangles; a polygon with a corner that cannot be read becomes a
/// fan around its first one. A corner without normal takes that of its face; triangles whose
/// positions cannot be read are left out.
/// @param texCoords the set to take texture coordinates from.
/// @param pose puts the corners into the world, if there is one.
FlatPrimitive flatten(const scene::Mesh& mesh, scene::IMeshPrimitive& primitive,
                      scene::StreamSemantic texCoords, const SkinPose* pose = nullptr);

}  // namespace vantorix::apps::render
