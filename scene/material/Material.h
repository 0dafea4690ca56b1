#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class MaterialParameter;

/// An effect with parameter values and the name of the active technique.
///
/// Ownership: parameters are shared; a copy and a clone refer to the same parameter objects.
/// Threads: not locked.
class VANTORIX_SCENE_EXPORT Material {
public:
    /// Without technique and parameters.
    Material(std::string materialID, std::string effectID);
    Material(const Material& other);
    Material& operator=(const Material& other);
    virtual ~Material();

    std::string getMaterialID() const;
    std::string getEffectID() const;
    std::string getTechnique() const;

    /// An empty ID is ignored.
    void setMaterialID(std::string materialID);
    /// An empty ID is ignored.
    void setEffectID(std::string effectID);
    void setTechnique(std::string technique);

    /// @name Parameters
    /// @{
    /// Inserts at the front, so that the list is in reverse order of addition. Names may repeat.
    /// An empty pointer is ignored.
    void addMaterialParameter(boost::shared_ptr<MaterialParameter> parameter);

    std::vector<boost::shared_ptr<MaterialParameter>> getMaterialParameters() const;
    void setMaterialParameters(std::vector<boost::shared_ptr<MaterialParameter>> parameters);
    int getParametersCount() const;

    /// Empty outside the list.
    boost::shared_ptr<MaterialParameter> getParameterAt(unsigned int index) const;

    /// The first parameter of that exact name, or empty.
    boost::shared_ptr<MaterialParameter> getParameterByName(std::string name) const;
    /// @}

    /// Same IDs and the same parameter objects. Deliberate: the technique is not carried over.
    Material clone() const;

    /// A line with both IDs, then one line per parameter; empty pointers are left out.
    std::string toString() const;

private:
    std::string materialID_;
    std::string effectID_;
    std::string technique_;
    std::vector<boost::shared_ptr<MaterialParameter>> parameters_;
};

/// For diagnostics. Deliberate: parameters appear as their addresses, one after the other.
VANTORIX_SCENE_EXPORT std::ostream& operator<<(std::ostream& out, const Material& material);

}  // namespace vantorix::scene
