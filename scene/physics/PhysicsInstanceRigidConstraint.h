#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class PhysicsRigidConstraint;

/// A constraint in use under a SID and a name of its own.
class VANTORIX_SCENE_EXPORT PhysicsInstanceRigidConstraint {
public:
    PhysicsInstanceRigidConstraint(boost::shared_ptr<PhysicsRigidConstraint> constraint,
                                   std::string sid, std::string name);
    virtual ~PhysicsInstanceRigidConstraint();

    const std::string& getSid() const;
    const std::string& getName() const;
    boost::shared_ptr<PhysicsRigidConstraint> getConstraint() const;

private:
    std::string sid_;
    std::string name_;
    boost::shared_ptr<PhysicsRigidConstraint> constraint_;
};

}  // namespace vantorix::scene
