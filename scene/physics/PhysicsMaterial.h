#pragma once

#include <string>

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// Surface properties of bodies in contact.
class VANTORIX_SCENE_EXPORT PhysicsMaterial {
public:
    PhysicsMaterial(std::string id, std::string name, float restitution, float staticFriction,
                    float dynamicFriction);
    virtual ~PhysicsMaterial();

    const std::string& getID() const;
    const std::string& getName() const;
    void setName(std::string name);

    float getRestitution() const;
    void setRestitution(float restitution);

    float getStaticFriction() const;
    void setStaticFriction(float staticFriction);

    float getDynamicFriction() const;
    void setDynamicFriction(float dynamicFriction);

private:
    std::string id_;
    std::string name_;
    float restitution_;
    float staticFriction_;
    float dynamicFriction_;
};

}  // namespace vantorix::scene
