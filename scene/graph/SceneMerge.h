#pragma once

#include <cstddef>
#include <map>
#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "scene/graph/ChildIndex.h"
#include "scene/graph/MaterialIndex.h"
#include "scene/graph/TreeSnapshot.h"

namespace vantorix::scene {

class IGeometry;
class InstanceGeometry;
class Material;
class Node;
class SceneManager;

/// One merge of a scene into another: the options, what was renamed, and the steps.
///
/// Keeps both scenes alive. Every event is a moment at which a handler may change anything: nothing
/// that both can reach is held by reference across one.
class SceneMerge {
public:
    SceneMerge(boost::shared_ptr<SceneManager> target, boost::shared_ptr<SceneManager> source,
               int options);

    void run(const std::string& parentNodeID);

private:
    enum Option {
        DISCARD_GEOMETRIES = 0x01,
        COMPARE_EFFECTS = 0x02,
        DISCARD_IMAGES = 0x04,
        DISCARD_LAYERS = 0x08,
        DISCARD_NODES = 0x10,
        MERGE_INTO_CHILD = 0x20
    };

    bool has(Option option) const { return (options_ & option) != 0; }

    void mergeLibraries();
    void mergeSceneGraph(const boost::shared_ptr<Node>& parent, const boost::shared_ptr<Node>& top);
    bool isUndisturbed(const Node& parent) const;
    bool isLogging() const;
    void fetchAhead(const TreeSnapshot& tree, std::size_t place) const;
    bool copiesEveryNode() const { return !has(DISCARD_NODES) && !has(MERGE_INTO_CHILD); }
    boost::shared_ptr<Node> place(const Node& node, const boost::shared_ptr<Node>& parent,
                                  bool isLeaf);
    boost::shared_ptr<Node> addCopy(const Node& node, std::string&& id,
                                    const boost::shared_ptr<Node>& parent, bool isLeaf);
    void logNode(const char* before, const std::string& id, const char* after) const;
    bool isTaken(const std::string& id) const;
    boost::shared_ptr<Node> copyNode(const Node& node, std::string&& id);
    void copyLayers(const Node& node, Node& copy) const;
    void copyInstances(const Node& node, Node& copy);
    boost::shared_ptr<IGeometry> geometryFor(InstanceGeometry& instance) const;
    boost::shared_ptr<Material> materialFor(const boost::shared_ptr<Material>& material);
    void announce() const;

    const boost::shared_ptr<SceneManager> target_;
    const boost::shared_ptr<SceneManager> source_;
    const int options_;
    std::map<std::string, std::string> geometryMap_;
    std::map<std::string, std::string> materialMap_;
    std::map<int, int> layerMap_;
    ChildIndex children_;
    MaterialIndex materials_;
};

}  // namespace vantorix::scene
