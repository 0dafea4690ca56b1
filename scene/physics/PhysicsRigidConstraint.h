#pragma once

#include <string>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class PhysicsAttachment;

/// Ties two bodies together within limits. The limits are 0 until set.
class VANTORIX_SCENE_EXPORT PhysicsRigidConstraint {
public:
    PhysicsRigidConstraint(std::string sid, std::string name, bool enabled, bool interpenetrate);
    virtual ~PhysicsRigidConstraint();

    const std::string& getSid() const;
    const std::string& getName() const;
    boost::shared_ptr<PhysicsAttachment> getRefAttachment() const;
    void setRefAttachment(boost::shared_ptr<PhysicsAttachment> refAttachment);

    boost::shared_ptr<PhysicsAttachment> getAttachment() const;
    void setAttachment(boost::shared_ptr<PhysicsAttachment> attachment);

    bool isEnabled() const;
    bool allowInterpenetrate() const;

    const Eigen::Vector3f& getLinearTranslationMin() const;
    const Eigen::Vector3f& getLinearTranslationMax() const;
    const Eigen::Vector3f& getLinearRotationMin() const;
    const Eigen::Vector3f& getLinearRotationMax() const;

    /// Sets all limits at once. By value, since a limit may be given that this object hands out.
    void setLinearlimits(Eigen::Vector3f translationMin, Eigen::Vector3f translationMax,
                         Eigen::Vector3f rotationMin, Eigen::Vector3f rotationMax);

private:
    std::string sid_;
    std::string name_;
    boost::shared_ptr<PhysicsAttachment> refAttachment_;
    boost::shared_ptr<PhysicsAttachment> attachment_;
    bool enabled_;
    bool interpenetrate_;
    Eigen::Vector3f linearTranslationMin_ = Eigen::Vector3f::Zero();
    Eigen::Vector3f linearTranslationMax_ = Eigen::Vector3f::Zero();
    Eigen::Vector3f linearRotationMin_ = Eigen::Vector3f::Zero();
    Eigen::Vector3f linearRotationMax_ = Eigen::Vector3f::Zero();
};

}  // namespace vantorix::scene
