#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/ImportOptions.h"
#include "apps/vantorix/Command.h"
#include "apps/vantorix/GeometrySize.h"

namespace vantorix::scene {
class GeometryManager;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::cli {

class LoadedModel;

/// What all commands share that change geometries of a model and tell what came of it. Polygons
/// come in as triangles.
class GeometryCommand : public Command {
public:
    void declare(CLI::App& app) override;
    ExitCode run(Console& console) override;

protected:
    using ImportOptions = import::ImportOptions;
    using SharedController = boost::shared_ptr<scene::Controller>;

    /// A geometry that is to be changed.
    struct Target {
        std::string id;
        boost::shared_ptr<scene::Mesh> mesh;
        SharedController controller;  ///< The skin on it; empty for none.
        GeometrySize before, after;
        double milliseconds = 0.0;
    };

    virtual void declareOptions(CLI::App& app) = 0;
    virtual ImportOptions importOptions() const;
    /// Looks at the targets before anything is changed. @throws Failure
    virtual void check(const std::string& file, const std::vector<Target>& targets) const;
    virtual bool showsEdges() const = 0;  ///< In the picture, those of all triangles.
    virtual void change(scene::GeometryManager& library, const Target& target) const = 0;

private:
    std::vector<Target> targetsIn(const LoadedModel& model, const Console& console) const;
    void changeAll(const LoadedModel& model, std::vector<Target>& targets) const;
    void runWithPicture(std::vector<Target>& targets, Console& console) const;

    std::string file_;
    std::string geometry_;
    std::string picture_;
    std::string size_ = "1200x600";
    bool json_ = false;
};

}  // namespace vantorix::apps::cli
