#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class Animation;
}

namespace vantorix::apps::cli {

class LoadedModel;

/// The clip with an ID or name, or the first one when @p clip is empty.
/// @throws Failure ANSWER_NO when the model has none at all, WRONG_USE when it has others.
boost::shared_ptr<scene::Animation> findClip(const LoadedModel& model, const std::string& clip);

/// @throws Failure ANSWER_NO when the model has no animation.
void requireClips(const LoadedModel& model);

}  // namespace vantorix::apps::cli
