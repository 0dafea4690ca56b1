#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class PhysicsRigidBody;
class PhysicsRigidConstraint;

/// Bodies and the constraints between them.
class VANTORIX_SCENE_EXPORT PhysicsModel {
public:
    PhysicsModel(std::string id, std::string name);
    virtual ~PhysicsModel();

    const std::string& getID() const;
    const std::string& getName() const;
    void setName(std::string name);

    const std::vector<boost::shared_ptr<PhysicsRigidBody>>& getRigidBodyLibrary() const;
    void setRigidBodyLibrary(std::vector<boost::shared_ptr<PhysicsRigidBody>> rigidBodies);

    const std::vector<boost::shared_ptr<PhysicsRigidConstraint>>& getRigidConstraintLibrary() const;
    void setRigidConstraintLibrary(
        std::vector<boost::shared_ptr<PhysicsRigidConstraint>> rigidConstraints);

    /// The first body of that exact ID, or empty.
    boost::shared_ptr<PhysicsRigidBody> getRigidBodyById(const std::string& id) const;

    /// The first constraint of that exact SID, or empty.
    boost::shared_ptr<PhysicsRigidConstraint> getRigidConstraintById(const std::string& sid) const;

private:
    std::string id_;
    std::string name_;
    std::vector<boost::shared_ptr<PhysicsRigidBody>> rigidBodies_;
    std::vector<boost::shared_ptr<PhysicsRigidConstraint>> rigidConstraints_;
};

}  // namespace vantorix::scene
