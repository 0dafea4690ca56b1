#pragma once

#include <string>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class SceneManager;

/// Projection parameters of a camera. Where it stands is a matter of its node (CameraInstance).
///
/// Setters of the parameters send "CameraUpdated" with the camera's ID.
/// Ownership: the scene manager is weak; once it is gone the camera can be edited but sends
/// nothing. Threads: not locked.
class VANTORIX_SCENE_EXPORT Camera {
public:
    enum Type : int { PERSPECTIVE = 0, ORTHOGRAPHIC = 1 };

    /// Sees from 0.1 to 10000. The field of view is 45 in perspective and 1 in orthographic
    /// projection; another @p type starts with all three at 0.
    Camera(boost::shared_ptr<SceneManager> sceneManager, Type type, std::string id,
           std::string name);
    virtual ~Camera();

    std::string getID() const;
    std::string getName() const;
    Type getCameraType() const;
    float getYFov() const;
    float getZNear() const;
    float getZFar() const;

    /// Deliberate: sends no event and leaves the other parameters alone.
    void setCameraType(Type type);

    /// In degrees for a perspective camera.
    void setYFov(float yFov);
    void setZNear(float zNear);
    void setZFar(float zFar);

protected:
    void triggerUpdateEvent();

private:
    boost::weak_ptr<SceneManager> sceneManager_;
    std::string id_;
    std::string name_;
    Type type_;
    float yFov_ = 0.0f;
    float zNear_ = 0.0f;
    float zFar_ = 0.0f;
};

}  // namespace vantorix::scene
