#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class IGeometry;
class Material;

/// A shared geometry with the materials to draw it with, bound by material symbol: the materials
/// of an instance are looked up with the symbol that each mesh primitive carries.
///
/// Deliberate: the set of symbols is fixed at construction.
/// Ownership: geometry and materials are shared. Threads: not locked.
class VANTORIX_SCENE_EXPORT InstanceGeometry {
public:
    InstanceGeometry(boost::shared_ptr<IGeometry> geometry,
                     std::map<std::string, boost::shared_ptr<Material>> materials);

    /// Binds the symbol of primitives that were created without one, "vantorix_material".
    InstanceGeometry(boost::shared_ptr<IGeometry> geometry, boost::shared_ptr<Material> material);
    virtual ~InstanceGeometry();

    boost::shared_ptr<IGeometry> getGeometry() const;

    /// Empty when @p symbol is not bound.
    boost::shared_ptr<Material> getMaterial(std::string symbol) const;

    /// Rebinds @p symbol; an unknown symbol or an empty @p material changes no binding.
    void setMaterial(std::string symbol, boost::shared_ptr<Material> material);

    /// The bound materials in ascending order of their symbols, one entry per symbol.
    const std::vector<boost::shared_ptr<Material>>& getMaterialList() const;

    /// Changes made through the reference show in getMaterialList() after the next setMaterial().
    std::map<std::string, boost::shared_ptr<Material>>& getMaterialMap();

    std::string toString() const;

protected:
    void assembleMaterialsList();

private:
    boost::shared_ptr<IGeometry> geometry_;
    std::map<std::string, boost::shared_ptr<Material>> materialMap_;
    std::vector<boost::shared_ptr<Material>> materialList_;
};

}  // namespace vantorix::scene
