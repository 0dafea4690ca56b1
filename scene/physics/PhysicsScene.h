#pragma once

#include <string>
#include <vector>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class PhysicsInstanceModel;

/// Instanced models under one gravity and one time step.
class VANTORIX_SCENE_EXPORT PhysicsScene {
public:
    PhysicsScene(std::string id, std::string name);
    virtual ~PhysicsScene();

    const std::string& getID() const;
    void setId(std::string id);

    const std::string& getName() const;
    void setName(std::string name);

    /// Along negative z by default, on purpose.
    const Eigen::Vector3f& getGravity() const;
    void setGravity(const Eigen::Vector3f& gravity);

    /// In seconds.
    float getTimeStep() const;
    void setTimeStep(float timeStep);

    const std::vector<boost::shared_ptr<PhysicsInstanceModel>>& getInstancedModels() const;
    void setInstancedModels(std::vector<boost::shared_ptr<PhysicsInstanceModel>> instancedModels);

private:
    std::string id_;
    std::string name_;
    Eigen::Vector3f gravity_ = Eigen::Vector3f(0.0f, 0.0f, -9.81f);
    float timeStep_ = 1.0f / 60.0f;
    std::vector<boost::shared_ptr<PhysicsInstanceModel>> instancedModels_;
};

}  // namespace vantorix::scene
