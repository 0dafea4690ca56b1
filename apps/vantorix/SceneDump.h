#pragma once

#include <string>

#include <boost/function.hpp>

namespace vantorix::scene {
class SceneManager;
}

namespace vantorix::apps::cli {

/// Writes all that a scene holds as one JSON document, a line per item, in library and tree order;
/// docs/scene-dump.md describes it. Numbers read back to the same floats; what is not finite
/// becomes null. @p write gets the text in pieces, so that large scenes need no second copy.
void dumpScene(scene::SceneManager& scene, const std::string& file,
               const boost::function<void(const std::string& text)>& write);

}  // namespace vantorix::apps::cli
