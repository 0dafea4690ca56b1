#pragma once

#include <osg/Geometry>

#include "bench/TorusGrid.h"

namespace vantorix::bench {

/// Positions and triangles.
inline osg::ref_ptr<osg::Geometry> makeOpenSceneGraphTorus(const TorusGrid& grid) {
    osg::ref_ptr<osg::Vec3Array> positions = new osg::Vec3Array;
    for (std::size_t i = 0; i < grid.positions.size(); i += 3) {
        positions->push_back({grid.positions[i], grid.positions[i + 1], grid.positions[i + 2]});
    }
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(positions);
    geometry->addPrimitiveSet(new osg::DrawElementsUInt(
        GL_TRIANGLES, static_cast<unsigned int>(grid.indices.size()), grid.indices.data()));
    return geometry;
}

}  // namespace vantorix::bench
