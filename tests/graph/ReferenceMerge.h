#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>

#include "scene/graph/SceneManager.h"

namespace vantorix::scene {
class Node;
class InstanceGeometry;
}  // namespace vantorix::scene

namespace vantorix::test {

/// What SceneManager::mergeSceneManager has to do, as slowly and plainly as it can be put: straight
/// recursion, linear searches, public operations only.
class ReferenceMerge {
public:
    /// Lines that would be logged are appended to @p log; geometry and layer managers log their
    /// own.
    ReferenceMerge(boost::shared_ptr<scene::SceneManager> target,
                   boost::shared_ptr<scene::SceneManager> source, std::vector<std::string>& log)
        : target_(std::move(target)), source_(std::move(source)), log_(log) {}

    void run(int options, const std::string& parentNodeID);

private:
    using Renames = std::map<std::string, std::string>;
    using NodePtr = boost::shared_ptr<scene::Node>;

    /// The source tree as it was when the copying began.
    struct Shape {
        NodePtr node;
        std::vector<Shape> children;
    };

    static Shape shapeOf(const NodePtr& node);
    Renames mergeImages(bool discard);
    Renames mergeEffects();
    Renames mergeMaterials(const Renames& effects, const Renames& images, bool compareEffects);
    void mergeNode(const NodePtr& parent, const Shape& shape, bool discard, bool intoChild);
    NodePtr copyOf(const scene::Node& node, const std::string& id);
    void copyInstance(scene::InstanceGeometry& instance, scene::Node& copy);
    NodePtr findNode(const std::string& id) const;
    std::string suffixed(const std::string& id);

    boost::shared_ptr<scene::SceneManager> target_;
    boost::shared_ptr<scene::SceneManager> source_;
    std::vector<std::string>& log_;
    Renames geometryMap_;
    Renames materialMap_;
    std::map<int, int> layerMap_;
};

}  // namespace vantorix::test
