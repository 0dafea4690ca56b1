#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "apps/import/ImportOptions.h"
#include "apps/import/ImportResult.h"

namespace vantorix::scene {
class SceneManager;
}

namespace vantorix::apps::import {

/// Brings model files into a scene. Throws nothing of its own and survives every file.
/// Threads: holds the scene lock while it edits the scene, not while it reads the file.
class ModelImporter {
public:
    explicit ModelImporter(const ImportOptions& options = {}) : options_(options) {}

    /// Adds the model in @p file below the root of @p scene.
    ImportResult importFile(const std::string& file,
                            boost::shared_ptr<scene::SceneManager> scene) const;

private:
    ImportOptions options_;
};

}  // namespace vantorix::apps::import
