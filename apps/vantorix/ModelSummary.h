#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <Eigen/Core>

// What a model holds, in plain records, ready to be printed.

namespace vantorix::apps::cli {

class LoadedModel;

/// An axis-aligned box; not known where there is nothing to enclose or no finite box around it.
struct BoxSummary {
    bool isKnown = false;
    Eigen::Vector3f least = Eigen::Vector3f::Zero();
    Eigen::Vector3f most = Eigen::Vector3f::Zero();
};

struct InstanceSummary {
    std::string geometryId;
    std::vector<std::pair<std::string, std::string>> materials;  ///< Symbol and material ID.
    std::string controllerId;  ///< Of the controller through which it is shown, if any.
    std::vector<std::string> skeletons;
};

struct NodeSummary {
    std::string id;
    std::string name;
    std::string type;  ///< Free text of the node.
    int parent = -1;   ///< Position in the list of nodes, -1 for the root.
    std::size_t depth = 0;
    std::vector<std::string> layers;
    BoxSummary box;  ///< In the world, of this node and all below it.
    std::vector<InstanceSummary> instances;
    std::vector<std::string> cameras;
    std::vector<std::string> lights;

    /// What the node is for: "geometry", "camera", "light", "controller", several of them joined
    /// by "+", or "group".
    std::string kind() const;
};

struct StreamSummary {
    std::string name;
    int stride = 0;
    std::size_t tuples = 0;
};

struct PrimitiveSummary {
    std::string type;
    std::size_t faces = 0;
    std::string materialSymbol;
};

struct GeometrySummary {
    std::string id;
    std::string name;
    std::string type;
    BoxSummary box;
    std::vector<StreamSummary> streams;
    std::vector<PrimitiveSummary> primitives;

    std::size_t faces() const;
};

struct ParameterSummary {
    std::string name, type, value;
};

struct MaterialSummary {
    std::string id, effect, technique;
    std::vector<ParameterSummary> parameters;
};

struct ImageSummary {
    std::string id, file;
};

struct CameraSummary {
    std::string id, name, type;
    float yFov = 0.0f, zNear = 0.0f, zFar = 0.0f;
};

struct LightSummary {
    std::string id, name, type;
    Eigen::Vector3f colour = Eigen::Vector3f::Zero();
};

struct ControllerSummary {
    std::string id, name, geometryId;
    std::size_t joints = 0;
    std::size_t vertices = 0;
    std::size_t influences = 0;  ///< Of joints on vertices.
};

struct LayerSummary {
    int id = 0;
    std::string name;
    std::size_t nodes = 0;
};

/// A name and a number, in the order in which they are shown.
using Counts = std::vector<std::pair<std::string, std::size_t>>;

struct ModelSummary {
    std::string file, format, name;
    std::string upAxis;
    float meterUnit = 1.0f;
    BoxSummary box;
    Counts counts;                   ///< Of what the tree shows.
    Counts libraries;                ///< Sizes of the scene's libraries.
    std::vector<NodeSummary> nodes;  ///< Depth first, each after its parent.
    std::vector<LayerSummary> layers;
    std::vector<GeometrySummary> geometries;
    std::vector<MaterialSummary> materials;
    std::vector<ImageSummary> images;
    std::vector<CameraSummary> cameras;
    std::vector<LightSummary> lights;
    std::vector<ControllerSummary> controllers;
    std::vector<std::string> notes;  ///< What the import changed, dropped or missed.
};

/// Reads a model's scene under the scene lock.
ModelSummary summarize(const LoadedModel& model);

}  // namespace vantorix::apps::cli
