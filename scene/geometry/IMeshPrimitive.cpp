#include "scene/geometry/IMeshPrimitive.h"

namespace vantorix::scene {

IMeshPrimitive::~IMeshPrimitive() = default;

std::string IMeshPrimitive::typeToString(Type type) {
    switch (type) {
        case TRIANGLES:
            return "Triangles";
        case POLYGONS:
            return "Polygons";
        case LINES:
            return "Lines";
        case LINE_STRIPS:
            return "Line Strips";
        case POLYLISTS:
            return "Poly lists";
        case TRIANGLE_FANS:
            return "Triangle Fans";
        case TRIANGLE_STRIPS:
            return "Triangle Strips";
        case INVALID:
            return "Invalid";
    }
    return "Invalid2";
}

}  // namespace vantorix::scene
