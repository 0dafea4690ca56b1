#include <algorithm>

#include <boost/make_shared.hpp>
#include <boost/unordered/unordered_map.hpp>

#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/MappingSearch.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/SceneManager.h"

namespace vantorix::scene {
namespace {

using Geometries = std::vector<boost::shared_ptr<IGeometry>>;

/// this * ratio + other * (1 - ratio). A side without weight is left out: what is not finite there
/// does not come through.
float blended(float mine, float theirs, float ratio) {
    if (ratio == 1.0f) return mine;
    if (ratio == 0.0f) return theirs;
    return mine * ratio + theirs * (1.0f - ratio);
}

Geometries geometriesOf(const GeometryManager& manager) {
    Geometries geometries;
    manager.getGeometries(geometries);
    return geometries;
}

/// The message for the user when the scenes cannot be blended; null when they can. The numbers at
/// the end are where it is shown.
const char* findMorphProblem(const Geometries& mine, const Geometries& theirs, float ratio) {
    if (!(ratio >= 0.0f && ratio <= 1.0f)) return "Invalid morph ratio. Morphing failed., 10, 10";
    if (mine.size() != theirs.size()) {
        return "Invalid morph targets [different # geometries]. Morphing failed., 10, 10";
    }
    const bool sameTypes = std::equal(
        mine.begin(), mine.end(), theirs.begin(),
        [](const auto& one, const auto& two) { return one->getType() == two->getType(); });
    if (sameTypes) return nullptr;
    return "Invalid morph targets [different type of geometries]. Morphing failed., 10, 10";
}

Stream* positionsOf(const boost::shared_ptr<IGeometry>& geometry) {
    const auto mesh = boost::dynamic_pointer_cast<Mesh>(geometry);
    if (!mesh || mesh->getType() != IGeometry::MESH) return nullptr;
    const auto* const mapping = findBySemantic(mesh->getVertices(), POSITION);
    return mapping ? mapping->stream.get() : nullptr;
}

void blendPositions(const boost::shared_ptr<IGeometry>& target,
                    const boost::shared_ptr<IGeometry>& source, float ratio) {
    auto* const mine = positionsOf(target);
    const auto* const theirs = positionsOf(source);
    if (!mine || !theirs || mine->count != theirs->count) return;
    std::vector<float> values = mine->values;
    const auto common = std::min(values.size(), theirs->values.size());
    for (std::size_t i = 0; i < common; ++i) {
        values[i] = blended(values[i], theirs->values[i], ratio);
    }
    mine->values = values;
}

/// A scene with one mesh that holds nothing but these positions.
boost::shared_ptr<SceneManager> makeJointsScene(
    const boost::shared_ptr<core::event::EventManager>& events,
    const std::vector<float>& positions) {
    const auto stream = boost::make_shared<Stream>("VTX_JOINTS_STREAM", 3, true);
    stream->values = positions;
    stream->count = static_cast<int>(positions.size() / 3);
    const auto mesh = boost::make_shared<Mesh>("VTX_JOINTS_MESH", "");
    mesh->addStream(stream);
    mesh->setVertices({StreamMapping(POSITION, stream, 0)});
    const auto scene = boost::make_shared<SceneManager>(events);
    scene->getGeometryManager()->addGeometry(mesh);
    return scene;
}

}  // namespace

void SceneManager::morph(boost::shared_ptr<SceneManager> other, float ratio) {
    if (!other) return;
    const auto self = weak_from_this().lock();
    const auto mine = geometriesOf(*geometryManager_);
    const auto theirs = geometriesOf(*other->geometryManager_);
    if (const auto* const problem = findMorphProblem(mine, theirs, ratio)) {
        return triggerEvent("DisplayMessageAt", problem);
    }
    const auto jointsScene = makeJointsScene(getEventManager(), blendJointPositions(*other, ratio));
    replaceJoints(jointsScene);
    jointsScene->stop();
    for (std::size_t i = 0; i < mine.size(); ++i) blendPositions(mine[i], theirs[i], ratio);
}

std::vector<float> SceneManager::blendJointPositions(const SceneManager& other, float ratio) const {
    std::vector<boost::shared_ptr<Node>> mine, theirs;
    std::vector<int> parents;
    transverseSceneForJoints(root_, mine, parents);
    other.transverseSceneForJoints(other.root_, theirs, parents);
    std::vector<float> positions;
    if (mine.size() != theirs.size()) return positions;
    boost::unordered_map<std::string, const Node*> namesakes;
    for (const auto& joint : theirs) namesakes.emplace(joint->getID(), joint.get());
    for (const auto& joint : mine) {
        const auto found = namesakes.find(joint->getID());
        if (found == namesakes.end()) continue;
        const auto here = joint->getCombinedTransformations();
        const auto there = found->second->getCombinedTransformations();
        for (int axis = 0; axis < 3; ++axis) {
            positions.push_back(blended(here(axis, 3), there(axis, 3), ratio));
        }
    }
    return positions;
}

}  // namespace vantorix::scene
