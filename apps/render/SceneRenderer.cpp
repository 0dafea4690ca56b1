#include "apps/render/SceneRenderer.h"

#include <algorithm>

#include "apps/render/DefaultLighting.h"
#include "apps/render/OffscreenContext.h"
#include "apps/render/RenderTarget.h"
#include "apps/render/ScenePainter.h"
#include "apps/render/SceneReader.h"
#include "apps/render/TextureStore.h"
#include "apps/render/VertexStore.h"

namespace vantorix::apps::render {
namespace {

/// Channel values up to this look black on any screen.
constexpr std::uint8_t blackest = 10;

bool isBlack(const Picture& picture) {
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
        const auto* pixel = picture.rgba.data() + i;
        if (pixel[3] != 0 && std::max({pixel[0], pixel[1], pixel[2]}) > blackest) return false;
    }
    return true;
}

bool isMeant(const CameraPlace& place, const std::string& camera) {
    return camera == place.id || camera == place.sid || camera == place.name ||
           camera == place.nodeId || camera == place.nodeName;
}

[[noreturn]] void refuseCamera(const std::string& camera, const std::vector<CameraPlace>& places) {
    std::string text = "there is no camera \"" + camera + "\"; the model has ";
    if (places.empty()) text += "none";
    for (std::size_t i = 0; i < places.size(); ++i) text += (i ? ", " : "") + places[i].id;
    throw UnknownCamera(text);
}

const CameraPlace& placeFor(const std::string& camera, const std::vector<CameraPlace>& places) {
    for (const auto& place : places) {
        if (place.id == camera) return place;  // IDs win over names.
    }
    for (const auto& place : places) {
        if (isMeant(place, camera)) return place;
    }
    refuseCamera(camera, places);
}

Viewpoint viewpointFor(const SceneContents& contents, const View& view) {
    const double aspect = static_cast<double>(view.width) / std::max(view.height, 1);
    const auto through = [&](const CameraPlace& place) {
        return throughLens(place.lens, place.world, aspect);
    };
    if (!view.camera.empty()) return through(placeFor(view.camera, contents.cameras));
    if (!view.framed && !contents.cameras.empty()) return through(contents.cameras.front());
    return frame(contents.box, contents.upAxis, aspect);
}

}  // namespace

class SceneRenderer::Implementation {
public:
    Rendering render(SceneContents contents, const ImageSource& images, const View& view) {
        const Viewpoint viewpoint = viewpointFor(contents, view);
        Scene scene(images);
        Lighting& lighting = contents.list.lighting;
        limitExposure(contents.box.least + (contents.box.most - contents.box.least) * 0.5,
                      lighting);
        Rendering rendering;
        rendering.usedDefaultLight = lighting.sources.empty();
        if (rendering.usedDefaultLight) helpByDefaultLight(viewpoint, lighting);

        const RenderTarget target(view.width, view.height);
        rendering.picture = draw(contents.list, viewpoint, target, scene);
        rendering.coveredPixels = countCovered(rendering.picture);
        if (!rendering.usedDefaultLight && rendering.coveredPixels > 0 &&
            isBlack(rendering.picture)) {
            rendering.usedDefaultLight = true;
            helpByDefaultLight(viewpoint, lighting);
            rendering.picture = draw(contents.list, viewpoint, target, scene);
        }
        rendering.notes = scene.textures.getNotes();
        return rendering;
    }

    std::string describe() const { return context_.describe(); }

private:
    /// What the driver holds for one scene.
    struct Scene {
        explicit Scene(const ImageSource& images) : textures(images) {}
        TextureStore textures;
        VertexStore vertices;
    };

    Picture draw(const DrawList& list, const Viewpoint& viewpoint, const RenderTarget& target,
                 Scene& scene) {
        target.begin();
        painter_.paint(list, viewpoint, scene.vertices, scene.textures);
        return target.read();
    }

    OffscreenContext context_;  // First: the painter needs it.
    ScenePainter painter_;
};

SceneRenderer::SceneRenderer() : implementation_(std::make_unique<Implementation>()) {}

SceneRenderer::~SceneRenderer() = default;

Rendering SceneRenderer::render(scene::SceneManager& scene, const ImageSource& images,
                                const View& view) {
    return implementation_->render(readScene(scene), images, view);
}

std::string SceneRenderer::describe() const { return implementation_->describe(); }

}  // namespace vantorix::apps::render
