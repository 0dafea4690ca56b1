#include "apps/vantorix/LoadedModel.h"

#include <boost/make_shared.hpp>

#include "core_api/event/EventManager.h"

#include "apps/import/ModelImporter.h"
#include "apps/vantorix/Failure.h"
#include "apps/vantorix/PrintableText.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {

LoadedModel::LoadedModel(const std::string& file,
                         boost::shared_ptr<core::event::EventManager> events,
                         const import::ImportOptions& options)
    : file_(file) {
    if (!events) events = boost::make_shared<core::event::EventManager>();
    scene_ = boost::make_shared<scene::SceneManager>(events);
    import_ = import::ModelImporter(options).importFile(file, scene_);
    if (import_.status == import::ImportResult::DONE) return;
    const bool isLimit = import_.status == import::ImportResult::LIMIT_MET;
    throw Failure(isLimit ? LIMIT_MET : FILE_REFUSED, printable(import_.reason));
}

LoadedModel::~LoadedModel() { scene_->stop(); }

}  // namespace vantorix::apps::cli
