#pragma once

#include <string>

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// A texture file by name. The file is never opened.
class VANTORIX_SCENE_EXPORT Image {
public:
    /// Mind the order: the file name comes before the display name.
    Image(std::string id, std::string fileName, std::string name);

    const std::string& getID() const;
    const std::string& getName() const;
    const std::string& getFilename() const;

    /// Deliberate: does nothing, an image keeps the ID that it was made with.
    void setID(const std::string& id);
    void setName(const std::string& name);
    void setFileName(const std::string& fileName);

private:
    std::string id_;
    std::string name_;
    std::string fileName_;
};

}  // namespace vantorix::scene
