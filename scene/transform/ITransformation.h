#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// One element of a node's transformation list: its parameters, a type and an optional SID by which
/// animation channels address it. Elements compute no matrices; Node::addTransformation does.
///
/// Threads: not locked. Elements are shared between nodes and animation channels.
class VANTORIX_SCENE_EXPORT ITransformation {
public:
    enum Type : int { LOOK_AT = 0, MATRIX = 1, ROTATE = 2, SCALE = 3, SKEW = 4, TRANSLATE = 5 };

    virtual Type getType() const = 0;

    /// Whether a setter was called since the last call of updated(); asking clears the flag.
    virtual bool updated() = 0;

    /// Does not count as an update.
    virtual void setSid(std::string sid) = 0;
    virtual std::string getSid() const = 0;

    /// An independent element of the same class with the same SID, parameters and flag.
    virtual boost::shared_ptr<ITransformation> clone() const = 0;

    virtual ~ITransformation();

protected:
    ITransformation() = default;
    ITransformation(const ITransformation&) = default;
    ITransformation& operator=(const ITransformation&) = default;
};

}  // namespace vantorix::scene
