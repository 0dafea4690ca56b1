#pragma once

#include <string>

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Controller;

/// A named, identified shape in a scene's geometry library.
class VANTORIX_SCENE_EXPORT IGeometry {
public:
// Inside its class, INVALID is this one and not the stream semantic of the same name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
    enum Type : int { CONVEX_MESH = 0, MESH = 1, SPLINE = 2, INVALID = 3 };
#pragma GCC diagnostic pop

    virtual std::string getID() = 0;
    virtual void setID(const std::string& id) = 0;
    virtual std::string getName() = 0;
    virtual void setName(const std::string& name) = 0;
    virtual void setType(Type type) = 0;
    virtual Type getType() = 0;
    virtual void print() = 0;
    virtual boost::shared_ptr<IGeometry> clone() = 0;

    /// @name Axis-aligned bounding volume in the geometry's own frame
    /// @{
    virtual Eigen::Vector3f getBVCenter() = 0;
    virtual Eigen::Vector3f getBVMin() = 0;
    virtual Eigen::Vector3f getBVMax() = 0;
    /// @}

    virtual void recalculateVertexNormals() = 0;
    /// Splits faces into smaller ones; the skin of @p controller, which may be empty, follows.
    virtual void subDivide(boost::shared_ptr<Controller> controller) = 0;
    virtual ~IGeometry();

    /// "Convex Mesh", "Mesh", "Spline", "Invalid"; "Invalid2" for any other value.
    static std::string typeToString(Type type);
};

}  // namespace vantorix::scene
