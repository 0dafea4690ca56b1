#include "apps/render/ScenePainter.h"

#include <algorithm>

#include "apps/render/DrawList.h"
#include "apps/render/TextureStore.h"
#include "apps/render/VertexStore.h"

namespace vantorix::apps::render {

/// One item with all that decides when and how it is drawn.
struct ScenePainter::Call {
    const DrawItem* item;
    ShaderFeatures features;
    GLuint texture;
    bool blended;
    double depth;  ///< Of its node, in eye space: the farther, the smaller.
};

namespace {

ShaderFeatures::Texture textureFeature(const TextureStore::Texture& texture,
                                       const Surface& surface) {
    if (texture.name == 0) return ShaderFeatures::PLAIN;
    const bool usesAlpha = texture.hasAlpha && surface.alpha != Surface::IGNORED;
    return usesAlpha ? ShaderFeatures::CUT_OUT : ShaderFeatures::TEXTURED;
}

ShaderFeatures lightFeatures(const Lighting& lighting) {
    ShaderFeatures features;
    const auto isLocal = [](const LightSource& light) { return light.position.w() != 0.0; };
    features.localLights = std::any_of(lighting.sources.begin(), lighting.sources.end(), isLocal);
    features.lightCount = static_cast<int>(
        std::min<std::size_t>(lighting.sources.size(), ShaderFeatures::mostLights));
    return features;
}

bool isBlended(const ShaderFeatures& features, const DrawItem& item) {
    const bool blendsTexture =
        features.texture == ShaderFeatures::CUT_OUT && item.surface.alpha == Surface::BLENDED;
    return blendsTexture || item.surface.colour.w() < 1.0f || item.hasTransparentCorners;
}

}  // namespace

ScenePainter::ScenePainter() = default;

ScenePainter::~ScenePainter() = default;

void ScenePainter::paint(const std::vector<DrawItem>& items, const Lighting& lighting,
                         const Viewpoint& viewpoint, VertexStore& vertices,
                         TextureStore& textures) {
    glEnable(GL_DEPTH_TEST);
    // Surfaces lie a little deeper than they are, so that wires stand before them.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1.0f, 1.0f);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glActiveTexture(GL_TEXTURE0);
    current_ = nullptr;
    for (const auto& call : plan(items, lighting, viewpoint, textures)) {
        draw(call, viewpoint, lighting, vertices);
    }
}

void ScenePainter::paintWires(const std::vector<DrawItem>& items, const Viewpoint& viewpoint,
                              VertexStore& vertices) {
    DrawItem wire;
    wire.surface.colour = {0.08f, 0.1f, 0.16f, 0.5f};
    wire.surface.unlit = true;
    ShaderFeatures features;
    features.lightCount = 1;  // There is no program without, though nothing is lit.
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    for (const auto& item : items) {
        wire.corners = item.corners;
        wire.world = item.world;
        draw({&wire, features, 0, true, 0.0}, viewpoint, {}, vertices);
    }
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

std::vector<ScenePainter::Call> ScenePainter::plan(const std::vector<DrawItem>& items,
                                                   const Lighting& lighting,
                                                   const Viewpoint& viewpoint,
                                                   TextureStore& textures) {
    std::vector<Call> calls;
    ShaderFeatures features = lightFeatures(lighting);
    for (const auto& item : items) {
        const auto texture = textures.get(item.surface.imageId);
        features.texture = textureFeature(texture, item.surface);
        features.shines = !item.surface.specular.isZero();
        const double depth = (viewpoint.view * item.world.col(3)).z();
        calls.push_back({&item, features, texture.name, isBlended(features, item), depth});
    }
    std::stable_sort(calls.begin(), calls.end(), [](const Call& a, const Call& b) {
        if (a.blended != b.blended) return b.blended;
        // Opaque items of one program follow each other: changing it costs most.
        return a.blended ? a.depth < b.depth : a.features < b.features;
    });
    return calls;
}

void ScenePainter::draw(const Call& call, const Viewpoint& viewpoint, const Lighting& lighting,
                        VertexStore& vertices) {
    const auto& shader = shaderFor(call.features, viewpoint, lighting);
    shader.setWorld(viewpoint.view * call.item->world);
    shader.setSurface(call.item->surface);
    if (call.texture != 0) glBindTexture(GL_TEXTURE_2D, call.texture);
    (call.blended ? glEnable : glDisable)(GL_BLEND);
    // Glass must not hide what lies behind it; the pixels that a cut-out keeps must.
    const bool hides = !call.blended || call.features.texture == ShaderFeatures::CUT_OUT;
    glDepthMask(hides ? GL_TRUE : GL_FALSE);
    glBindVertexArray(vertices.get(call.item->corners));
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(call.item->corners->size()));
}

const SceneShader& ScenePainter::shaderFor(const ShaderFeatures& features,
                                           const Viewpoint& viewpoint, const Lighting& lighting) {
    const auto& shader = shaders_.try_emplace(features, features).first->second;
    if (current_ != &shader) shader.begin(viewpoint, lighting);
    current_ = &shader;
    return shader;
}

}  // namespace vantorix::apps::render
