#pragma once

#include <Eigen/Geometry>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class InstanceGeometry;
class IPhysicsShape;
class PhysicsMaterial;

/// One collision shape of a rigid body: a geometric shape or the mesh of a geometry instance, with
/// its place relative to the body.
class VANTORIX_SCENE_EXPORT PhysicsShape {
public:
    PhysicsShape();
    virtual ~PhysicsShape();

    boost::shared_ptr<IPhysicsShape> getShape() const;

    /// An empty pointer is ignored.
    void setShape(boost::shared_ptr<IPhysicsShape> shape);

    boost::shared_ptr<InstanceGeometry> getInstanceGeometry() const;

    /// An empty pointer is ignored.
    void setInstanceGeometry(boost::shared_ptr<InstanceGeometry> instanceGeometry);

    boost::shared_ptr<PhysicsMaterial> getPhysicsMaterial() const;

    /// Deliberate: an empty pointer takes the material away, unlike PhysicsRigidBody.
    void setPhysicsMaterial(boost::shared_ptr<PhysicsMaterial> physicsMaterial);

    bool getHollow() const;
    void setHollow(bool hollow);

    /// -1 until set.
    float getMass() const;
    void setMass(float mass);

    /// -1 until set.
    float getDensity() const;
    void setDensity(float density);

    const Eigen::Translation3f& getTranslation() const;
    void setTranslation(const Eigen::Translation3f& translation);

    /// Angle in radians.
    const Eigen::AngleAxisf& getRotation() const;
    void setRotation(const Eigen::AngleAxisf& rotation);

private:
    boost::shared_ptr<IPhysicsShape> shape_;
    boost::shared_ptr<InstanceGeometry> instanceGeometry_;
    boost::shared_ptr<PhysicsMaterial> physicsMaterial_;
    bool hollow_ = false;
    float mass_ = -1.0f;
    float density_ = -1.0f;
    Eigen::Translation3f translation_ = Eigen::Translation3f::Identity();
    Eigen::AngleAxisf rotation_ = Eigen::AngleAxisf::Identity();
};

}  // namespace vantorix::scene
