#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "core_api/event/EventBase.h"
#include "core_api/logger/Logger.h"

#include "scene/SceneExport.h"
#include "scene/geometry/IGeometry.h"

namespace vantorix::core::event {
class EventManager;
}

namespace vantorix::scene {

class Controller;

/// The geometry library of one scene: geometries by identifier, in byte-wise order.
///
/// The key is the identifier that a geometry had when it was added. Nothing is ever removed.
/// Ownership: geometries are shared with instances and with managers that merged them.
/// Threads: not locked. A listener of its events may use and change the manager.
class VANTORIX_SCENE_EXPORT GeometryManager : public core::event::EventBase {
public:
    explicit GeometryManager(boost::shared_ptr<core::event::EventManager> eventManager);
    ~GeometryManager() override;

    /// False, with nothing changed, for an empty pointer and for an identifier that is taken.
    bool addGeometry(boost::shared_ptr<IGeometry> geometry);
    /// An empty pointer for an unknown identifier.
    boost::shared_ptr<IGeometry> getGeometry(const std::string& id) const;
    /// IGeometry::INVALID for an unknown identifier.
    IGeometry::Type getGeometryType(const std::string& id) const;
    /// Appends all geometries to @p out, in key order.
    void getGeometries(std::vector<boost::shared_ptr<IGeometry>>& out) const;
    std::vector<std::string> getIDs() const;
    unsigned int getCount() const;
    /// Prints every geometry, in key order.
    void print() const;

    /// Takes over the geometries of @p other, which keeps them too. One whose identifier is taken
    /// is discarded when @p discardRepeated is set; otherwise a clone comes in under the identifier
    /// with "__renamed__" appended.
    /// Deliberate: a renamed clone whose new identifier is taken as well is lost, and is reported
    /// as renamed all the same.
    /// @return old to new identifier, renamed geometries only.
    std::map<std::string, std::string> mergeGeometries(boost::shared_ptr<GeometryManager> other,
                                                       bool discardRepeated);

    /// Sends "GeometryTopologyUpdate" (@p id) afterwards. Ignores an unknown identifier.
    void recalculateVertexNormals(const std::string& id);
    /// Subdivides the geometry, and the skin of @p controller when there is one; sends
    /// "GeometryTopologyUpdate" (@p id) afterwards. Ignores an unknown identifier. If memory runs
    /// out, Mesh::subDivide() says what stays.
    void subDivideGeometry(const std::string& id, boost::shared_ptr<Controller> controller);

private:
    using GeometryMap = std::map<std::string, boost::shared_ptr<IGeometry>>;

    GeometryMap geometries_;
    core::logger::Logger logger_;
};

}  // namespace vantorix::scene
