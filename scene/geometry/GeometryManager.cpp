#include "scene/geometry/GeometryManager.h"

#include <utility>

#include "scene/geometry/LogWriters.h"

namespace vantorix::scene {

GeometryManager::GeometryManager(boost::shared_ptr<core::event::EventManager> eventManager)
    : EventBase(std::move(eventManager)) {
    addFileWriter(logger_, "GeometryManager.log");
}

GeometryManager::~GeometryManager() = default;

bool GeometryManager::addGeometry(boost::shared_ptr<IGeometry> geometry) {
    if (!geometry) return false;
    const auto id = geometry->getID();
    return geometries_.emplace(id, std::move(geometry)).second;
}

boost::shared_ptr<IGeometry> GeometryManager::getGeometry(const std::string& id) const {
    const auto place = geometries_.find(id);
    return place == geometries_.end() ? boost::shared_ptr<IGeometry>() : place->second;
}

IGeometry::Type GeometryManager::getGeometryType(const std::string& id) const {
    const auto geometry = getGeometry(id);
    return geometry ? geometry->getType() : IGeometry::INVALID;
}

void GeometryManager::getGeometries(std::vector<boost::shared_ptr<IGeometry>>& out) const {
    for (const auto& [id, geometry] : geometries_) out.push_back(geometry);
}

std::vector<std::string> GeometryManager::getIDs() const {
    std::vector<std::string> ids;
    ids.reserve(geometries_.size());
    for (const auto& [id, geometry] : geometries_) ids.push_back(id);
    return ids;
}

unsigned int GeometryManager::getCount() const {
    return static_cast<unsigned int>(geometries_.size());
}

void GeometryManager::print() const {
    std::vector<boost::shared_ptr<IGeometry>> geometries;
    getGeometries(geometries);
    for (const auto& geometry : geometries) geometry->print();
}

std::map<std::string, std::string> GeometryManager::mergeGeometries(
    boost::shared_ptr<GeometryManager> other, bool discardRepeated) {
    std::map<std::string, std::string> renamed;
    if (!other) return renamed;
    const GeometryMap source = other->geometries_;  // A geometry's own code may edit the managers.
    GeometryMap added;
    for (const auto& [id, geometry] : source) {
        if (geometries_.count(id) == 0) {
            added.emplace(id, geometry);
        } else if (discardRepeated) {
            logger_ << "[INFO] Found repeated geometry ID and discarded new one: " + id;
        } else if (const auto copy = geometry->clone()) {
            const auto newID = id + "__renamed__";  // Even if that is in use as well.
            copy->setID(newID);
            added.emplace(newID, copy);
            renamed[id] = newID;
            logger_ << "[INFO] Found repeated geometry ID. Renamed geometry " + id + " to " + newID;
        }
    }
    geometries_.insert(added.begin(), added.end());
    logger_ << "[INFO] Added " + std::to_string(added.size()) + " new geometries";
    return renamed;
}

void GeometryManager::recalculateVertexNormals(const std::string& id) {
    const auto geometry = getGeometry(id);
    if (!geometry) return;
    geometry->recalculateVertexNormals();
    triggerEvent("GeometryTopologyUpdate", id);
}

void GeometryManager::subDivideGeometry(const std::string& id,
                                        boost::shared_ptr<Controller> controller) {
    const auto geometry = getGeometry(id);
    if (!geometry) return;
    geometry->subDivide(std::move(controller));
    triggerEvent("GeometryTopologyUpdate", id);
}

}  // namespace vantorix::scene
