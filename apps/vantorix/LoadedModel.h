#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "apps/import/ImportOptions.h"
#include "apps/import/ImportResult.h"

namespace vantorix::core::event {
class EventManager;
}
namespace vantorix::scene {
class SceneManager;
}

namespace vantorix::apps::cli {

/// A model file in a scene of its own. The scene ends with this object.
class LoadedModel {
public:
    /// @param events hears everything that building the scene announces; empty for nobody.
    /// @throws Failure when the model is refused or meets a limit.
    explicit LoadedModel(const std::string& file,
                         boost::shared_ptr<core::event::EventManager> events = {},
                         const import::ImportOptions& options = {});
    ~LoadedModel();

    LoadedModel(const LoadedModel&) = delete;
    LoadedModel& operator=(const LoadedModel&) = delete;

    const std::string& getFile() const { return file_; }
    scene::SceneManager& getScene() const { return *scene_; }
    const import::ImportResult& getImport() const { return import_; }

private:
    std::string file_;
    boost::shared_ptr<scene::SceneManager> scene_;
    import::ImportResult import_;
};

}  // namespace vantorix::apps::cli
