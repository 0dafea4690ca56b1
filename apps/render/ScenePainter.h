#pragma once

#include <map>
#include <vector>

#include <epoxy/gl.h>

#include "apps/render/SceneShader.h"

namespace vantorix::apps::render {

class TextureStore;
class VertexStore;
struct DrawItem;
struct Lighting;
struct Viewpoint;

/// Draws items into the current target: opaque items first, then the transparent ones from
/// the farthest node to the nearest. Keeps its shaders from one picture to the next.
class ScenePainter {
public:
    ScenePainter();
    ~ScenePainter();

    ScenePainter(const ScenePainter&) = delete;
    ScenePainter& operator=(const ScenePainter&) = delete;

    /// @throws RenderError when a shader cannot be built.
    void paint(const std::vector<DrawItem>& items, const Lighting& lighting,
               const Viewpoint& viewpoint, VertexStore& vertices, TextureStore& textures);

    /// Draws the edges of all triangles over what paint() drew of the same items.
    void paintWires(const std::vector<DrawItem>& items, const Viewpoint& viewpoint,
                    VertexStore& vertices);

private:
    struct Call;

    static std::vector<Call> plan(const std::vector<DrawItem>& items, const Lighting& lighting,
                                  const Viewpoint& viewpoint, TextureStore& textures);
    void draw(const Call& call, const Viewpoint& viewpoint, const Lighting& lighting,
              VertexStore& vertices);
    const SceneShader& shaderFor(const ShaderFeatures& features, const Viewpoint& viewpoint,
                                 const Lighting& lighting);

    std::map<ShaderFeatures, SceneShader> shaders_;
    const SceneShader* current_ = nullptr;
};

}  // namespace vantorix::apps::render
