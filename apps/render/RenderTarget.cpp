#include "apps/render/RenderTarget.h"

#include <string>

#include "apps/render/Picture.h"
#include "apps/render/RenderError.h"

namespace vantorix::apps::render {
namespace {

constexpr GLsizei sampleCount = 4;

/// One triangle that covers the whole picture.
constexpr const char* coverVertexSource = R"(#version 330 core
void main() {
    gl_Position = vec4(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0, 0.0, 1.0);
}
)";

constexpr const char* resolveFragmentSource = R"(#version 330 core
uniform sampler2DMS samples;
out vec4 average;
void main() {
    ivec2 at = ivec2(gl_FragCoord.xy);
    average = 0.25 * (texelFetch(samples, at, 0) + texelFetch(samples, at, 1) +
                      texelFetch(samples, at, 2) + texelFetch(samples, at, 3));
}
)";

void requireSize(int width, int height) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largest);
    if (width >= 1 && height >= 1 && width <= largest && height <= largest) return;
    throw RenderError("the driver draws pictures up to " + std::to_string(largest) +
                      " pixels a side");
}

void requireComplete() {
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE &&
        glGetError() == GL_NO_ERROR) {
        return;
    }
    throw RenderError("the driver has no room for a picture of this size");
}

}  // namespace

RenderTarget::RenderTarget(int width, int height) : width_(width), height_(height) {
    requireSize(width, height);
    createSampled();
    createResolved();
    glGenVertexArrays(1, &noVertices_);
    // A pass of our own instead of glBlitFramebuffer: the same pixels, but the driver keeps the
    // compiled pass between runs, which a blit's it does not (llvmpipe: 5 ms against 35).
    resolver_ = std::make_unique<ShaderProgram>(coverVertexSource, resolveFragmentSource);
}

RenderTarget::~RenderTarget() {
    glDeleteFramebuffers(1, &sampledFrame_);
    glDeleteFramebuffers(1, &resolvedFrame_);
    glDeleteTextures(1, &colour_);
    glDeleteRenderbuffers(1, &depth_);
    glDeleteRenderbuffers(1, &resolved_);
    glDeleteVertexArrays(1, &noVertices_);
}

void RenderTarget::createSampled() {
    glGenFramebuffers(1, &sampledFrame_);
    glBindFramebuffer(GL_FRAMEBUFFER, sampledFrame_);
    glGenTextures(1, &colour_);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, colour_);
    glTexImage2DMultisample(GL_TEXTURE_2D_MULTISAMPLE, sampleCount, GL_RGBA8, width_, height_,
                            GL_TRUE);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D_MULTISAMPLE, colour_,
                           0);
    glGenRenderbuffers(1, &depth_);
    glBindRenderbuffer(GL_RENDERBUFFER, depth_);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, sampleCount, GL_DEPTH_COMPONENT24, width_,
                                     height_);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, depth_);
    requireComplete();
}

void RenderTarget::createResolved() {
    glGenFramebuffers(1, &resolvedFrame_);
    glBindFramebuffer(GL_FRAMEBUFFER, resolvedFrame_);
    glGenRenderbuffers(1, &resolved_);
    glBindRenderbuffer(GL_RENDERBUFFER, resolved_);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width_, height_);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, resolved_);
    requireComplete();
}

void RenderTarget::begin() const {
    glBindFramebuffer(GL_FRAMEBUFFER, sampledFrame_);
    glViewport(0, 0, width_, height_);
    glDepthMask(GL_TRUE);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void RenderTarget::resolve() const {
    glBindFramebuffer(GL_FRAMEBUFFER, resolvedFrame_);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, colour_);
    resolver_->use();
    glBindVertexArray(noVertices_);
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

Picture RenderTarget::read() const {
    resolve();
    Picture picture(width_, height_);
    glReadPixels(0, 0, width_, height_, GL_RGBA, GL_UNSIGNED_BYTE, picture.rgba.data());
    return picture;
}

}  // namespace vantorix::apps::render
