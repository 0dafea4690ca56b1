#pragma once

#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class InstanceGeometry;
class Node;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::cli {

/// Shows the skins of a scene as plain geometries, in the pose of the moment, for as long as it
/// lives: what looks for faces finds those of skinned models where they are drawn.
class PosedSkins {
public:
    explicit PosedSkins(scene::SceneManager& scene);
    ~PosedSkins();

    PosedSkins(const PosedSkins&) = delete;
    PosedSkins& operator=(const PosedSkins&) = delete;

private:
    void addTo(const scene::SceneManager& scene, const boost::shared_ptr<scene::Node>& node);

    std::vector<
        std::pair<boost::shared_ptr<scene::Node>, boost::shared_ptr<scene::InstanceGeometry>>>
        added_;
};

}  // namespace vantorix::apps::cli
