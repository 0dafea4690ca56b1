#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Node;
class PhysicsInstanceRigidBody;
class PhysicsInstanceRigidConstraint;
class PhysicsModel;

/// A model placed under a node, with instances of its bodies and constraints.
class VANTORIX_SCENE_EXPORT PhysicsInstanceModel {
public:
    PhysicsInstanceModel(boost::shared_ptr<PhysicsModel> physicsModel,
                         boost::shared_ptr<Node> parentNode);
    virtual ~PhysicsInstanceModel();

    boost::shared_ptr<PhysicsModel> getPhysicsModel() const;
    boost::shared_ptr<Node> getParentNode() const;
    const std::vector<boost::shared_ptr<PhysicsInstanceRigidBody>>& getInstancedRigidBodies() const;
    void setInstancedRigidBodies(
        std::vector<boost::shared_ptr<PhysicsInstanceRigidBody>> instancedRigidBodies);

    const std::vector<boost::shared_ptr<PhysicsInstanceRigidConstraint>>&
    getInstancedRigidConstraint() const;
    void setInstancedRigidConstraints(
        std::vector<boost::shared_ptr<PhysicsInstanceRigidConstraint>> instancedRigidConstraints);

private:
    boost::shared_ptr<PhysicsModel> physicsModel_;
    boost::shared_ptr<Node> parentNode_;
    std::vector<boost::shared_ptr<PhysicsInstanceRigidBody>> instancedRigidBodies_;
    std::vector<boost::shared_ptr<PhysicsInstanceRigidConstraint>> instancedRigidConstraints_;
};

}  // namespace vantorix::scene
