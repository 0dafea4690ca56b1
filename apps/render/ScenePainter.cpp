#include "apps/render/ScenePainter.h"

#include <algorithm>

#include "apps/render/DrawList.h"
#include "apps/render/TextureStore.h"
#include "apps/render/VertexStore.h"

namespace vantorix::apps::render {

/// One item with all that decides when and how it is drawn.
struct ScenePainter::Call {
    const DrawItem* item;
    SceneShader::Variant variant;
    GLuint texture;
    bool blended;
    double depth;  ///< Of its node, in eye space: the farther, the smaller.
};

namespace {

SceneShader::Variant variantFor(const TextureStore::Texture& texture, const Surface& surface) {
    if (texture.name == 0) return SceneShader::PLAIN;
    const bool usesAlpha = texture.hasAlpha && surface.alpha != Surface::IGNORED;
    return usesAlpha ? SceneShader::CUT_OUT : SceneShader::TEXTURED;
}

bool isBlended(SceneShader::Variant variant, const DrawItem& item) {
    if (item.surface.colour.w() < 1.0f) return true;
    if (variant == SceneShader::CUT_OUT && item.surface.alpha == Surface::BLENDED) return true;
    return std::any_of(item.corners->begin(), item.corners->end(),
                       [](const Corner& corner) { return corner.colour[3] < 255; });
}

}  // namespace

ScenePainter::ScenePainter() = default;

ScenePainter::~ScenePainter() = default;

void ScenePainter::paint(const std::vector<DrawItem>& items, const Lighting& lighting,
                         const Viewpoint& viewpoint, VertexStore& vertices,
                         TextureStore& textures) {
    glEnable(GL_DEPTH_TEST);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glActiveTexture(GL_TEXTURE0);
    current_ = nullptr;
    for (const auto& call : plan(items, viewpoint, textures)) {
        draw(call, viewpoint, lighting, vertices);
    }
}

std::vector<ScenePainter::Call> ScenePainter::plan(const std::vector<DrawItem>& items,
                                                   const Viewpoint& viewpoint,
                                                   TextureStore& textures) {
    std::vector<Call> calls;
    for (const auto& item : items) {
        const auto texture = textures.get(item.surface.imageId);
        const auto variant = variantFor(texture, item.surface);
        const double depth = (viewpoint.view * item.world.col(3)).z();
        calls.push_back({&item, variant, texture.name, isBlended(variant, item), depth});
    }
    std::stable_sort(calls.begin(), calls.end(), [](const Call& a, const Call& b) {
        if (a.blended != b.blended) return b.blended;
        // Opaque items of one variant follow each other: changing the program costs most.
        return a.blended ? a.depth < b.depth : a.variant < b.variant;
    });
    return calls;
}

void ScenePainter::draw(const Call& call, const Viewpoint& viewpoint, const Lighting& lighting,
                        VertexStore& vertices) {
    const auto& shader = shaderFor(call.variant, viewpoint, lighting);
    shader.setWorld(viewpoint.view * call.item->world);
    shader.setSurface(call.item->surface);
    if (call.texture != 0) glBindTexture(GL_TEXTURE_2D, call.texture);
    (call.blended ? glEnable : glDisable)(GL_BLEND);
    // Glass must not hide what lies behind it; the pixels that a cut-out keeps must.
    glDepthMask(!call.blended || call.variant == SceneShader::CUT_OUT ? GL_TRUE : GL_FALSE);
    glBindVertexArray(vertices.get(call.item->corners));
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(call.item->corners->size()));
}

const SceneShader& ScenePainter::shaderFor(SceneShader::Variant variant, const Viewpoint& viewpoint,
                                           const Lighting& lighting) {
    auto& shader = shaders_[variant];
    if (!shader) shader = std::make_unique<SceneShader>(variant);
    if (current_ != shader.get()) shader->begin(viewpoint, lighting);
    current_ = shader.get();
    return *shader;
}

}  // namespace vantorix::apps::render
