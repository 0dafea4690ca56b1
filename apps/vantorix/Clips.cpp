#include "apps/vantorix/Clips.h"

#include "apps/vantorix/Failure.h"
#include "apps/vantorix/LoadedModel.h"
#include "apps/vantorix/PrintableText.h"
#include "scene/animation/Animation.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::apps::cli {

void requireClips(const LoadedModel& model) {
    if (!model.getScene().getAnimationsLibrary().empty()) return;
    throw Failure(ANSWER_NO, printable(model.getFile()) + ": has no animation");
}

boost::shared_ptr<scene::Animation> findClip(const LoadedModel& model, const std::string& clip) {
    requireClips(model);
    const auto clips = model.getScene().getAnimationsLibrary();
    if (clip.empty()) return clips.front();
    for (const auto& candidate : clips) {
        if (candidate->getID() == clip) return candidate;  // IDs win over names.
    }
    for (const auto& candidate : clips) {
        if (candidate->getName() == clip) return candidate;
    }
    std::string text = model.getFile() + ": there is no clip \"" + clip + "\"; the model has ";
    for (const auto& known : clips) {
        text += (&known == &clips.front() ? "" : ", ") + known->getID();
    }
    throw Failure(WRONG_USE, printable(text));
}

}  // namespace vantorix::apps::cli
