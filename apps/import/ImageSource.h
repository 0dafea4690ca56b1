#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

namespace vantorix::apps::import {

struct ModelTexture;

/// Where the pixels of an image of the scene are. Both fields are empty for a missing file.
struct ImageSource {
    std::string path;  ///< A regular file, found when the model was imported.
    boost::shared_ptr<const ModelTexture> embedded;  ///< A picture inside the model file.
};

}  // namespace vantorix::apps::import
