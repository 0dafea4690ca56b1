#pragma once

#include "apps/render/DrawList.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {
class Material;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

/// How a material looks, read from the texts of its parameters: "diffuse", "specular", "emissive"
/// (up to four numbers), "opacity", "shininess", "shininessStrength", "metallic", "roughness",
/// "alphaMode", "alphaCutoff", "diffuseTexture" and "diffuseTextureSet". What a text does not say
/// keeps its neutral value. The technique "unlit"
/// and the effect "import_unlit" show the colour as it is.
Surface readSurface(const scene::Material& material);

}  // namespace vantorix::apps::render
