#pragma once

#include <set>
#include <string>
#include <vector>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "scene/graph/Node.h"

namespace vantorix::scene {

/// What only some nodes have. Most nodes of a large scene never allocate it.
struct Node::Extras {
    std::string sid;
    std::string type;
    std::set<int> layers;
    std::vector<boost::shared_ptr<Light>> lights;
    std::vector<boost::shared_ptr<Camera>> cameras;
    std::vector<boost::shared_ptr<InstanceGeometry>> geometries;
    std::vector<boost::shared_ptr<InstanceController>> controllers;
    std::vector<boost::shared_ptr<ITransformation>> elements;
};

}  // namespace vantorix::scene
