#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/render/DrawList.h"
#include "apps/render/ImageFile.h"
#include "apps/render/Picture.h"

namespace vantorix::scene {
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::render {

/// The asked camera stands nowhere in the scene; what() names those that do.
class UnknownCamera : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How to picture a scene.
struct View {
    int width = 800;
    int height = 600;
    /// ID, SID, name, node ID or node name of a camera. Empty: the scene's first camera, or where
    /// that shows nothing, everything in a three-quarter view.
    std::string camera;
    /// Shows everything, as in a scene without cameras.
    bool framed = false;
    bool wires = false;  ///< Shows the edges of all triangles.
};

/// A picture and what there is to say about it.
struct Rendering {
    Picture picture;      ///< Without background; colours are multiplied by their alpha.
    Viewpoint viewpoint;  ///< Where the picture was taken from.
    std::size_t coveredPixels = 0;
    bool usedDefaultLight = false;
    std::vector<std::string> notes;  ///< What could not be done as asked, one line each.
};

/// Draws scenes without a display. Only one may exist at a time; used by the thread that made it.
class SceneRenderer {
public:
    /// @throws RenderError when there is no way to draw here.
    SceneRenderer();
    ~SceneRenderer();

    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    /// A lit, textured, antialiased picture. When the scene has no lights, or its lights leave
    /// nearly every visible pixel black, a default light helps.
    /// @param images is asked for each image once.
    /// @throws RenderError when the driver cannot make the picture, RenderLimit when the scene is
    /// too large, UnknownCamera.
    Rendering render(scene::SceneManager& scene, const ImageSource& images, const View& view);

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace vantorix::apps::render
