#pragma once

#include <map>
#include <memory>
#include <vector>

#include <epoxy/gl.h>

namespace vantorix::apps::render {

struct Corner;

/// Triangles that were handed to the driver, each list of corners once.
class VertexStore {
public:
    using SharedCorners = std::shared_ptr<const std::vector<Corner>>;

    VertexStore() = default;
    ~VertexStore();

    VertexStore(const VertexStore&) = delete;
    VertexStore& operator=(const VertexStore&) = delete;

    /// The vertex array to bind before @p corners are drawn. Keeps @p corners alive.
    GLuint get(const SharedCorners& corners);

private:
    std::map<SharedCorners, GLuint> arrays_;
    std::vector<GLuint> buffers_;
};

}  // namespace vantorix::apps::render
