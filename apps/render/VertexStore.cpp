#include "apps/render/VertexStore.h"

#include <cstddef>

#include "apps/render/DrawList.h"

namespace vantorix::apps::render {
namespace {

void describeAttribute(GLuint index, GLint components, GLenum type, std::size_t offset) {
    glEnableVertexAttribArray(index);
    glVertexAttribPointer(index, components, type, type == GL_UNSIGNED_BYTE, sizeof(Corner),
                          // NOLINTNEXTLINE(performance-no-int-to-ptr): OpenGL hands it over so.
                          reinterpret_cast<const void*>(offset));
}

}  // namespace

VertexStore::~VertexStore() {
    for (const auto& [corners, array] : arrays_) glDeleteVertexArrays(1, &array);
    glDeleteBuffers(static_cast<GLsizei>(buffers_.size()), buffers_.data());
}

GLuint VertexStore::get(const SharedCorners& corners) {
    GLuint& array = arrays_[corners];
    if (array != 0) return array;
    glGenVertexArrays(1, &array);
    glBindVertexArray(array);
    glGenBuffers(1, &buffers_.emplace_back());
    glBindBuffer(GL_ARRAY_BUFFER, buffers_.back());
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(corners->size() * sizeof(Corner)),
                 corners->data(), GL_STATIC_DRAW);
    describeAttribute(0, 3, GL_FLOAT, offsetof(Corner, position));
    describeAttribute(1, 3, GL_FLOAT, offsetof(Corner, normal));
    describeAttribute(2, 2, GL_FLOAT, offsetof(Corner, texCoord));
    describeAttribute(3, 4, GL_UNSIGNED_BYTE, offsetof(Corner, colour));
    return array;
}

}  // namespace vantorix::apps::render
