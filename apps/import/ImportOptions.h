#pragma once

#include <string>

#include "apps/import/ImportLimits.h"

namespace vantorix::apps::import {

struct ImportOptions {
    ImportLimits limits;
    /// Path of vantorix-import-worker; empty to look beside the running program and in
    /// ../libexec/vantorix/ from there.
    std::string worker;
    bool triangulate = false;  ///< Cuts polygons into triangles; else they stay as they are.
    /// Makes a geometry of each primitive that a geometry would have: what else would be "mesh"
    /// becomes "mesh-red" and "mesh-blue", after the materials, both with the name "mesh".
    bool separatePrimitives = false;
};

}  // namespace vantorix::apps::import
