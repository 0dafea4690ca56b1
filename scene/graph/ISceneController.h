#pragma once

#include <boost/date_time/posix_time/posix_time_duration.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class SceneManager;

/// Something that moves a scene in real time; the scene's synchronisation thread drives it.
///
/// A controller must not keep the scene alive that it was attached to.
class VANTORIX_SCENE_EXPORT ISceneController {
public:
    /// For the controllers' own use; the thread does not ask.
    virtual bool isReadOnly() = 0;

    /// Called when the controller is added to @p sceneManager, with the controllers' lock held.
    virtual void attach(boost::shared_ptr<SceneManager> sceneManager) = 0;

    /// Advances by @p elapsed of scene time. Called on the synchronisation thread, about every
    /// 10 ms, with the scene locked; may add and remove controllers and stop the scene.
    /// @returns whether the scene was changed.
    virtual bool update(boost::posix_time::time_duration elapsed) = 0;

    virtual ~ISceneController();
};

}  // namespace vantorix::scene
