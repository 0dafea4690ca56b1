#pragma once

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Node;
class PhysicsRigidBody;

/// A body that moves a node.
class VANTORIX_SCENE_EXPORT PhysicsInstanceRigidBody {
public:
    PhysicsInstanceRigidBody(boost::shared_ptr<PhysicsRigidBody> body,
                             boost::shared_ptr<Node> target);
    virtual ~PhysicsInstanceRigidBody();

    boost::shared_ptr<PhysicsRigidBody> getBody() const;
    boost::shared_ptr<Node> getTarget() const;

private:
    boost::shared_ptr<PhysicsRigidBody> body_;
    boost::shared_ptr<Node> target_;
};

}  // namespace vantorix::scene
