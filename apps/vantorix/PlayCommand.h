#pragma once

#include <cstddef>
#include <string>

#include <boost/shared_ptr.hpp>
#include <nlohmann/json_fwd.hpp>

#include "apps/vantorix/Command.h"
#include "apps/vantorix/PictureOptions.h"

namespace vantorix::scene {
class Animation;
}

namespace vantorix::apps::cli {

class LoadedModel;
class PictureMaker;

/// "vantorix play": pictures of an animation, frame by frame, or the animation in real time.
class PlayCommand : public Command {
public:
    const char* getName() const override { return "play"; }
    const char* getSummary() const override {
        return "Play an animation of a model: pictures of its frames, or real time";
    }
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

private:
    /// What is told afterwards, as names and values.
    using Report = nlohmann::ordered_json;

    bool drawsFrames() const { return !folder_.empty() || !sheet_.empty(); }
    void drawFrames(const LoadedModel& model, boost::shared_ptr<scene::Animation> animation,
                    PictureMaker& maker, Report& report) const;
    std::string framePath(std::size_t frame) const;

    std::string file_;
    std::string clip_;
    std::size_t frames_ = 12;
    std::string folder_;
    std::string sheet_;
    bool realtime_ = false;
    PictureOptions options_;
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
