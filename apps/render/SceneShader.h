#pragma once

#include <Eigen/Core>
#include <epoxy/gl.h>

#include "apps/render/ShaderProgram.h"

namespace vantorix::apps::render {

struct Lighting;
struct Surface;
struct Viewpoint;

/// The program that lights surfaces, in one of its variants. All lighting is done in eye space.
class SceneShader {
public:
    /// What a variant does beyond lighting a plain colour. Fewer features compile and run faster.
    /// TEXTURED takes only the colour of the texture; CUT_OUT its opacity, too, and drops pixels
    /// that are transparent.
    enum Variant { PLAIN, TEXTURED, CUT_OUT };
    static constexpr int variantCount = 3;
    static constexpr int mostLights = 8;

    /// @throws RenderError
    explicit SceneShader(Variant variant);

    /// Makes this the current program and sets what all items share. Lights beyond mostLights are
    /// left out.
    void begin(const Viewpoint& viewpoint, const Lighting& lighting) const;

    void setWorld(const Eigen::Matrix4d& modelView) const;
    void setSurface(const Surface& surface) const;

private:
    void setLights(const Viewpoint& viewpoint, const Lighting& lighting) const;

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
