#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "apps/import/AnimationBuilder.h"
#include "apps/import/ControllerBuilder.h"
#include "apps/import/GeometryBuilder.h"
#include "apps/import/IdRegistry.h"
#include "apps/import/ImportResult.h"
#include "apps/import/MaterialBuilder.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::scene {
class Material;
class Mesh;
class Node;
class SceneManager;
}  // namespace vantorix::scene

namespace vantorix::apps::import {

struct ImportLimits;
struct ImportOptions;

/// Builds a scene from a document that passed its checks, through the scene's public classes.
///
/// The model's root is added below the scene's root. Nodes are complete when their parent takes
/// them, parents before children, each with one matrix element of the SID "transform" (but see
/// AnimationBuilder for those that move). A node that
/// is a joint of some skin has the type "JOINT"; a geometry with a skin is shown through an
/// instance of its controller, which names the roots of the skeletons. Cameras and
/// lights stand on the node that the file names, or on a child of it where they have a place of
/// their own in its frame; both look along -z with y up.
/// A scene without children also gets the model's name, up axis and unit of length.
class ModelBuilder {
public:
    /// Refers to @p document and @p result, which gets the root, image sources and notes.
    ModelBuilder(const ModelDocument& document, const std::string& modelFile,
                 boost::shared_ptr<scene::SceneManager> scene, ImportResult& result);

    /// @throws LimitError, with the scene unchanged, when meshes that nodes combine in different
    ///         ways would exceed the limits.
    void build(const ImportOptions& options);

private:
    void checkCombinations(const ImportLimits& limits) const;
    void reserveIds();
    void describeScene();
    void buildNodes();
    void nameNodes();
    boost::shared_ptr<scene::Node> buildNode(std::size_t number);
    void addInstances(const ModelNode& source, scene::Node& node);
    std::map<std::string, boost::shared_ptr<scene::Material>> bindingsOf(
        const ModelNode& source, const scene::Mesh& mesh) const;
    boost::shared_ptr<scene::Node> makeNode(const std::string& id, const std::string& name);
    boost::shared_ptr<scene::Node> placeFor(const std::string& name,
                                            const ModelPlacement& placement);
    void buildCamera(const ModelCamera& source);
    void buildLight(const ModelLight& source);

    const ModelDocument& document_;
    std::string modelFile_;
    boost::shared_ptr<scene::SceneManager> scene_;
    ImportResult& result_;
    MaterialBuilder materials_;
    AnimationBuilder animations_;
    IdRegistry nodeIds_;
    std::vector<std::string> nodeIdsByNumber_;
    std::vector<bool> joints_;  ///< Whether a node is one, by number.
    ControllerBuilder controllers_;
    IdRegistry geometryIds_;
    GeometryBuilder geometries_;
    IdRegistry cameraIds_;
    IdRegistry lightIds_;
    std::vector<boost::shared_ptr<scene::Node>> nodes_;
};

}  // namespace vantorix::apps::import
