#pragma once

#include <string>

#include <epoxy/gl.h>

namespace vantorix::apps::render {

/// A linked vertex and fragment shader.
class ShaderProgram {
public:
    /// @throws RenderError with the compiler's first line when the sources do not build.
    ShaderProgram(const std::string& vertexSource, const std::string& fragmentSource);
    ~ShaderProgram();

    ShaderProgram(const ShaderProgram&) = delete;
    ShaderProgram& operator=(const ShaderProgram&) = delete;

    void use() const { glUseProgram(program_); }

    /// -1, which OpenGL ignores, when the program has no such uniform.
    GLint uniform(const char* name) const { return glGetUniformLocation(program_, name); }

private:
    GLuint program_;
};

}  // namespace vantorix::apps::render
