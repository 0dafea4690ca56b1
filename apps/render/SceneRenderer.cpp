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

/// Channel values that the least ambience gives to a white surface that no light reaches.
constexpr std::uint8_t darkest = 46;

/// Whether light reaches less than one visible pixel in ten.
bool isDark(const Picture& picture, std::size_t coveredPixels) {
    std::size_t bright = 0;
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
        const auto* pixel = picture.rgba.data() + i;
        bright += std::max({pixel[0], pixel[1], pixel[2]}) > darkest;
    }
    return bright * 10 < coveredPixels;
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

double aspectOf(const View& view) {
    return static_cast<double>(view.width) / std::max(view.height, 1);
}

/// The camera to look through; null to show everything.
const CameraPlace* cameraFor(const SceneContents& contents, const View& view) {
    if (!view.camera.empty()) return &placeFor(view.camera, contents.cameras);
    return view.framed || contents.cameras.empty() ? nullptr : &contents.cameras.front();
}

Eigen::Vector3d centreOf(const Box& box) { return box.least + (box.most - box.least) * 0.5; }

}  // namespace

class SceneRenderer::Implementation {
public:
    Rendering render(const SceneContents& contents, const ImageSource& images, const View& view) {
        Pass pass{
            contents, view.wires, RenderTarget(view.width, view.height), TextureStore(images), {}};
        const CameraPlace* const camera = cameraFor(contents, view);
        const auto everything = frame(contents.box, contents.upAxis, aspectOf(view));
        Rendering rendering = draw(
            camera ? throughLens(camera->lens, camera->world, aspectOf(view)) : everything, pass);
        const bool isMissed =
            camera && rendering.coveredPixels == 0 && !contents.list.items.empty();
        if (isMissed && view.camera.empty()) {
            rendering = draw(everything, pass);
            rendering.notes.push_back("camera \"" + camera->id +
                                      "\" shows nothing; the whole model is shown instead");
        }
        const auto& unread = pass.textures.getNotes();
        rendering.notes.insert(rendering.notes.end(), unread.begin(), unread.end());
        return rendering;
    }

private:
    /// All that pictures of one scene share.
    struct Pass {
        const SceneContents& contents;
        bool wires;
        RenderTarget target;
        TextureStore textures;
        VertexStore vertices;
    };

    Rendering draw(const Viewpoint& viewpoint, Pass& pass) {
        Lighting lighting = pass.contents.list.lighting;
        balanceExposure(centreOf(pass.contents.box), lighting);
        Rendering rendering;
        rendering.viewpoint = viewpoint;
        rendering.usedDefaultLight = lighting.sources.empty();
        if (rendering.usedDefaultLight) helpByDefaultLight(viewpoint, lighting);
        rendering.picture = paint(viewpoint, lighting, pass);
        rendering.coveredPixels = countCovered(rendering.picture);
        if (rendering.usedDefaultLight || !isDark(rendering.picture, rendering.coveredPixels)) {
            return rendering;
        }
        helpByDefaultLight(viewpoint, lighting);
        rendering.usedDefaultLight = true;
        rendering.picture = paint(viewpoint, lighting, pass);
        return rendering;
    }

    Picture paint(const Viewpoint& viewpoint, const Lighting& lighting, Pass& pass) {
        pass.target.begin();
        const auto& items = pass.contents.list.items;
        painter_.paint(items, lighting, viewpoint, pass.vertices, pass.textures);
        if (pass.wires) painter_.paintWires(items, viewpoint, pass.vertices);
        return pass.target.read();
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

}  // namespace vantorix::apps::render
