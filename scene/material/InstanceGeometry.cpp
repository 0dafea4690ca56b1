#include "scene/material/InstanceGeometry.h"

#include <utility>

#include "scene/geometry/IGeometry.h"

namespace vantorix::scene {

InstanceGeometry::InstanceGeometry(boost::shared_ptr<IGeometry> geometry,
                                   std::map<std::string, boost::shared_ptr<Material>> materials)
    : geometry_(std::move(geometry)), materialMap_(std::move(materials)) {
    assembleMaterialsList();
}

InstanceGeometry::InstanceGeometry(boost::shared_ptr<IGeometry> geometry,
                                   boost::shared_ptr<Material> material)
    : geometry_(std::move(geometry)), materialMap_{{"vantorix_material", std::move(material)}} {
    assembleMaterialsList();
}

InstanceGeometry::~InstanceGeometry() = default;

boost::shared_ptr<IGeometry> InstanceGeometry::getGeometry() const { return geometry_; }

boost::shared_ptr<Material> InstanceGeometry::getMaterial(std::string symbol) const {
    const auto found = materialMap_.find(symbol);
    return found == materialMap_.end() ? nullptr : found->second;
}

void InstanceGeometry::setMaterial(std::string symbol, boost::shared_ptr<Material> material) {
    if (!material) return;
    const auto found = materialMap_.find(symbol);
    if (found != materialMap_.end()) found->second = std::move(material);
    assembleMaterialsList();  // Also for an unknown symbol: the map may have been written to.
}

const std::vector<boost::shared_ptr<Material>>& InstanceGeometry::getMaterialList() const {
    return materialList_;
}

std::map<std::string, boost::shared_ptr<Material>>& InstanceGeometry::getMaterialMap() {
    return materialMap_;
}

std::string InstanceGeometry::toString() const {
    return "Instance Geometry for Geometry with ID: " +
           (geometry_ ? geometry_->getID() : std::string()) + '\n';
}

void InstanceGeometry::assembleMaterialsList() {
    std::vector<boost::shared_ptr<Material>> materials;
    materials.reserve(materialMap_.size());
    for (const auto& binding : materialMap_) materials.push_back(binding.second);
    materialList_.swap(materials);
}

}  // namespace vantorix::scene
