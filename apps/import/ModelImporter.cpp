#include "apps/import/ModelImporter.h"

#include <new>

#include "apps/import/ModelBuilder.h"
#include "apps/import/ModelReader.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::import {
namespace {

class SceneLock {
public:
    explicit SceneLock(scene::SceneManager& scene) : scene_(scene) { scene_.lockScene(); }
    ~SceneLock() { scene_.unlockScene(); }
    SceneLock(const SceneLock&) = delete;
    SceneLock& operator=(const SceneLock&) = delete;

private:
    scene::SceneManager& scene_;
};

void build(const ModelDocument& document, const std::string& file, const ImportOptions& options,
           const boost::shared_ptr<scene::SceneManager>& scene, ImportResult& result) {
    const SceneLock lock(*scene);
    for (const auto& note : document.notes) result.report.add(note);
    result.format = document.format;
    try {
        ModelBuilder(document, file, scene, result).build(options);
    } catch (...) {
        // Libraries do not give back what they took, but without the tree nothing shows it.
        scene->removeNode(result.root);
        result.root.reset();
        result.images.clear();
        throw;
    }
}

std::string reasonLine(const std::string& file, const std::string& reason) {
    return oneLine(file) + ": " + oneLine(reason);
}

}  // namespace

ImportResult ModelImporter::importFile(const std::string& file,
                                       boost::shared_ptr<scene::SceneManager> scene) const {
    ImportResult result;
    try {
        if (!scene) throw RefusedError("there is no scene to import it into");
        const auto document = ModelReader(options_).read(file);
        build(document, file, options_, scene, result);
        result.status = ImportResult::DONE;
    } catch (const LimitError& error) {
        result.status = ImportResult::LIMIT_MET;
        result.limit = error.limit();
        result.reason = reasonLine(file, error.what());
    } catch (const RefusedError& error) {
        result.reason = reasonLine(file, error.what());
    } catch (const std::bad_alloc&) {
        result.status = ImportResult::LIMIT_MET;
        result.limit = {"memory", "MiB", 0.0, 0.0};
        result.reason = reasonLine(file, "not enough memory");
    }
    return result;
}

}  // namespace vantorix::apps::import
