#pragma once

#include <cstddef>

#include <boost/shared_ptr.hpp>

namespace vantorix::scene {
class Controller;
class Mesh;
}  // namespace vantorix::scene

namespace vantorix::apps::cli {

/// How much a mesh holds.
struct GeometrySize {
    std::size_t positions = 0;
    std::size_t normals = 0;
    std::size_t faces = 0;
    std::size_t bytes = 0;       ///< Of streams, indices, and the skin's influences.
    std::size_t influences = 0;  ///< Of joints on vertices.

    GeometrySize& operator+=(const GeometrySize& other);
};

/// @param controller the skin on the mesh; empty for none.
GeometrySize measure(const scene::Mesh& mesh,
                     const boost::shared_ptr<scene::Controller>& controller);

}  // namespace vantorix::apps::cli
