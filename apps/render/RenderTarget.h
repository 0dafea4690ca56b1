#pragma once

#include <memory>

#include <epoxy/gl.h>

#include "apps/render/ShaderProgram.h"

namespace vantorix::apps::render {

struct Picture;

/// What is drawn into: RGBA8 and 24-bit depth with four samples per pixel, and the picture of one
/// sample per pixel that is read back.
class RenderTarget {
public:
    /// @throws RenderError when the driver cannot make a target of this size.
    RenderTarget(int width, int height);
    ~RenderTarget();

    RenderTarget(const RenderTarget&) = delete;
    RenderTarget& operator=(const RenderTarget&) = delete;

    /// Directs drawing here and clears everything to transparent black at the largest depth.
    void begin() const;

    /// Averages the samples and hands out the result.
    Picture read() const;

private:
    void createSampled();
    void createResolved();
    void resolve() const;

    int width_;
    int height_;
    GLuint colour_ = 0;
    GLuint depth_ = 0;
    GLuint resolved_ = 0;
    GLuint sampledFrame_ = 0;
    GLuint resolvedFrame_ = 0;
    GLuint noVertices_ = 0;
    std::unique_ptr<ShaderProgram> resolver_;
};

}  // namespace vantorix::apps::render
