#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apps/render/SceneRenderer.h"
#include "apps/vantorix/Command.h"
#include "scene/spatial/PickHit.h"
#include "scene/spatial/Ray.h"

namespace vantorix::apps::cli {

class LoadedModel;

/// "vantorix pick": the faces that a ray, or a pixel of the picture, meets.
class PickCommand : public Command {
public:
    const char* getName() const override { return "pick"; }
    const char* getSummary() const override {
        return "Tell which face lies behind a pixel, or on a ray";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    using Hits = std::vector<scene::PickHit>;

    /// The picture whose pixel is asked for; it also shows the mark.
    scene::Ray rayOf(const render::Rendering& rendering) const;
    Hits castAt(const LoadedModel& model, const scene::Ray& ray) const;
    void saveMarked(render::Rendering rendering, const Hits& hits, const Console& console) const;
    std::string textOf(const Hits& hits) const;
    std::string jsonOf(const scene::Ray& ray, const Hits& hits) const;

    std::string file_;
    std::vector<float> ray_;
    std::vector<int> pixel_;
    std::string size_ = "800x600";
    std::string output_;
    render::View view_;
    bool all_ = false;
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
