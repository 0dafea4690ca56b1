#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include "apps/import/ImageSource.h"
#include "apps/import/ImportError.h"
#include "apps/import/ImportReport.h"

namespace vantorix::scene {
class Node;
}

namespace vantorix::apps::import {

/// How an import ended. The tree is changed by a DONE import only.
struct ImportResult {
    enum Status { DONE, REFUSED, LIMIT_MET };

    Status status = REFUSED;
    std::string reason;  ///< Unless DONE: one line with the file's name and the reason.
    LimitMet limit;      ///< For LIMIT_MET.

    ImportReport report;
    std::string format;                         ///< Name of the file format.
    boost::shared_ptr<scene::Node> root;        ///< The model's root, below the scene's.
    std::map<std::string, ImageSource> images;  ///< By image id.
};

}  // namespace vantorix::apps::import
