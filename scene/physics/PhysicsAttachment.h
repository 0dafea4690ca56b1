#pragma once

#include <Eigen/Geometry>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class PhysicsRigidBody;

/// One end of a constraint: a body and a place relative to it.
class VANTORIX_SCENE_EXPORT PhysicsAttachment {
public:
    explicit PhysicsAttachment(boost::shared_ptr<PhysicsRigidBody> attachment);
    virtual ~PhysicsAttachment();

    boost::shared_ptr<PhysicsRigidBody> getAttachment() const;
    void setAttachment(boost::shared_ptr<PhysicsRigidBody> attachment);

    const Eigen::Translation3f& getTranslate() const;
    void setTranslate(const Eigen::Translation3f& translate);

    /// Angle in radians.
    const Eigen::AngleAxisf& getRotation() const;
    void setRotation(const Eigen::AngleAxisf& rotation);

private:
    boost::shared_ptr<PhysicsRigidBody> attachment_;
    Eigen::Translation3f translate_ = Eigen::Translation3f::Identity();
    Eigen::AngleAxisf rotation_ = Eigen::AngleAxisf::Identity();
};

}  // namespace vantorix::scene
