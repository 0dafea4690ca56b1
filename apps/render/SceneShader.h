#pragma once

#include <cstddef>

#include <Eigen/Core>
#include <epoxy/gl.h>

#include "apps/render/ShaderProgram.h"

namespace vantorix::apps::render {

struct Lighting;
struct Surface;
struct Viewpoint;

/// What one program can do. Programs of fewer features compile and run faster, and the software
/// renderers that draw without a display skip nothing at run time.
struct ShaderFeatures {
    /// TEXTURED takes only the colour of the texture; CUT_OUT its opacity, too, and drops pixels
    /// that are transparent.
    enum Texture { PLAIN, TEXTURED, CUT_OUT };
    static constexpr int mostLights = 8;

    Texture texture = PLAIN;
    bool shines = false;       ///< Surfaces have highlights.
    bool localLights = false;  ///< Lights have a place, fade and have cones.
    int lightCount = 0;        ///< Up to mostLights.

    friend bool operator<(const ShaderFeatures& left, const ShaderFeatures& right);
};

/// The program that lights surfaces. All lighting is done in eye space.
class SceneShader {
public:
    /// @throws RenderError
    explicit SceneShader(const ShaderFeatures& features);

    /// Makes this the current program and sets what all items share. Lights beyond those of the
    /// features are left out.
    void begin(const Viewpoint& viewpoint, const Lighting& lighting) const;

    void setWorld(const Eigen::Matrix4d& modelView) const;
    void setSurface(const Surface& surface) const;

private:
    void setLights(const Viewpoint& viewpoint, const Lighting& lighting) const;

    std::size_t lightCount_;
    ShaderProgram program_;
    GLint modelView_;
    GLint normalMatrix_;
    GLint colour_;
    GLint emission_;
    GLint specular_;
    GLint cutoff_;
    GLint unlit_;
};

}  // namespace vantorix::apps::render
