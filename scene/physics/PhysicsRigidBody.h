#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class PhysicsMaterial;
class PhysicsShape;

/// A body made of collision shapes; a body that is not dynamic is never moved by the physics.
class VANTORIX_SCENE_EXPORT PhysicsRigidBody {
public:
    PhysicsRigidBody(std::string id, std::string name, bool dynamic);
    virtual ~PhysicsRigidBody();

    const std::string& getID() const;
    const std::string& getName() const;
    void setName(std::string name);

    float getMass() const;
    void setMass(float mass);

    bool isDynamic() const;
    void setDynamic(bool dynamic);

    const std::vector<boost::shared_ptr<PhysicsShape>>& getShapesLibrary() const;
    void setShapesLibrary(std::vector<boost::shared_ptr<PhysicsShape>> shapes);

    boost::shared_ptr<PhysicsMaterial> getPhysicsMaterial() const;

    /// Deliberate: an empty pointer is ignored, unlike PhysicsShape.
    void setPhysicsMaterial(boost::shared_ptr<PhysicsMaterial> physicsMaterial);

    /// Appends; an empty pointer is ignored.
    void addShape(boost::shared_ptr<PhysicsShape> shape);
    unsigned int getShapeCount() const;

private:
    std::string id_;
    std::string name_;
    float mass_ = 0.0f;
    bool dynamic_;
    std::vector<boost::shared_ptr<PhysicsShape>> shapes_;
    boost::shared_ptr<PhysicsMaterial> physicsMaterial_;
};

}  // namespace vantorix::scene
