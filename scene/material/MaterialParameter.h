#pragma once

#include <iosfwd>
#include <string>

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// A named value of a material, kept as text. Of type "texture", the value is the ID of an image.
class VANTORIX_SCENE_EXPORT MaterialParameter {
public:
    MaterialParameter(std::string name, std::string type, std::string value);
    virtual ~MaterialParameter();

    std::string getName() const;
    std::string getType() const;
    std::string getValue() const;

    void setName(std::string name);
    void setValue(std::string value);

private:
    std::string name_;
    std::string type_;
    std::string value_;
};

/// One line with name and value, for diagnostics.
VANTORIX_SCENE_EXPORT std::ostream& operator<<(std::ostream& out,
                                               const MaterialParameter& parameter);

}  // namespace vantorix::scene
