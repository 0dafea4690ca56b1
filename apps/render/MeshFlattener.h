#pragma once

#include "apps/render/DrawList.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {
class IMeshPrimitive;
class Mesh;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

/// What can be drawn of a mesh primitive.
struct FlatPrimitive {
    Corners corners;
    bool hasTransparentCorners = false;
    bool hasTexCoords = false;  ///< Without, a texture would show one of its pixels everywhere.
};

/// The faces of @p primitive as triangles, polygons as fans around their first corner. A corner
/// without normal takes that of its face; faces whose positions cannot be read are left out.
/// @param texCoords the set to take texture coordinates from.
FlatPrimitive flatten(const scene::Mesh& mesh, scene::IMeshPrimitive& primitive,
                      scene::StreamSemantic texCoords);

}  // namespace vantorix::apps::render
