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

    /// Adds the model in @p file below the root of @p scene. Where the memory of this program ends,
    /// that is a limit met: no node of the model stays in the tree, while the libraries and the
    /// description of the scene may keep what they got.
    ImportResult importFile(const std::string& file,
                            boost::shared_ptr<scene::SceneManager> scene) const;

private:
    ImportOptions options_;
};

}  // namespace vantorix::apps::import
