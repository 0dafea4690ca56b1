#include "scene/geometry/IGeometry.h"

namespace vantorix::scene {

IGeometry::~IGeometry() = default;

std::string IGeometry::typeToString(Type type) {
    switch (type) {
        case CONVEX_MESH:
            return "Convex Mesh";
        case MESH:
            return "Mesh";
        case SPLINE:
            return "Spline";
        case INVALID:
            return "Invalid";
    }
    return "Invalid2";
}

}  // namespace vantorix::scene
