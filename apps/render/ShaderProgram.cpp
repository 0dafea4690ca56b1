#include "apps/render/ShaderProgram.h"

#include <array>

#include "apps/render/RenderError.h"

namespace vantorix::apps::render {
namespace {

using LogText = std::array<char, 512>;

GLuint compile(GLenum stage, const std::string& source) {
    const GLuint shader = glCreateShader(stage);
    const char* text = source.c_str();
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    return shader;
}

/// Link errors include those of the stages.
void requireLinked(GLuint program) {
    GLint linked = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == GL_TRUE) return;
    LogText log{};
    glGetProgramInfoLog(program, static_cast<GLsizei>(log.size()), nullptr, log.data());
    glDeleteProgram(program);
    const std::string text = log.data();
    throw RenderError("the shaders do not build: " + text.substr(0, text.find('\n')));
}

}  // namespace

ShaderProgram::ShaderProgram(const std::string& vertexSource, const std::string& fragmentSource)
    : program_(glCreateProgram()) {
    for (const GLuint shader :
         {compile(GL_VERTEX_SHADER, vertexSource), compile(GL_FRAGMENT_SHADER, fragmentSource)}) {
        glAttachShader(program_, shader);
        glDeleteShader(shader);  // Goes with the program.
    }
    glLinkProgram(program_);
    requireLinked(program_);
}

ShaderProgram::~ShaderProgram() { glDeleteProgram(program_); }

}  // namespace vantorix::apps::render
