#pragma once

namespace vantorix::scene {
class Mesh;
}

namespace vantorix::apps::check {

class Report;

/// Streams, mappings, indices and faces of one mesh.
void checkMesh(const scene::Mesh& mesh, const Report& report);

}  // namespace vantorix::apps::check
