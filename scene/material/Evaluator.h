#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class Render;

/// A named sequence of render passes for a renderer to execute.
class VANTORIX_SCENE_EXPORT Evaluator {
public:
    explicit Evaluator(std::string name);

    const std::string& getName() const;
    void setName(const std::string& name);

    /// Appends; an empty pointer is ignored.
    void addRender(boost::shared_ptr<Render> render);
    unsigned int getRendersCount() const;

    /// Empty outside the list.
    boost::shared_ptr<Render> getRenderAt(unsigned int index) const;

private:
    std::string name_;
    std::vector<boost::shared_ptr<Render>> renders_;
};

}  // namespace vantorix::scene
