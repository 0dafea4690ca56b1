#include "apps/import/MeshTotals.h"

#include "apps/import/ImportError.h"
#include "apps/import/ImportLimits.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {

void MeshTotals::add(const ModelMesh& mesh) {
    vertices += mesh.countVertices();
    faces += mesh.countFaces();
    corners += mesh.countCorners();
    bones += mesh.skin.bones.size();
    influences += mesh.skin.influences.size();
}

void MeshTotals::requireWithin(const ImportLimits& limits) const {
    import::requireWithin("vertices", vertices, limits.vertices);
    import::requireWithin("faces", faces, limits.faces);
    import::requireWithin("corners of faces", corners, limits.corners);
    import::requireWithin("bones", bones, limits.items);
    import::requireWithin("influences of bones", influences, limits.influences);
}

}  // namespace vantorix::apps::import
