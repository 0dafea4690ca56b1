#include "apps/render/SceneShader.h"

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <vector>

#include <Eigen/Geometry>

#include "apps/render/DrawList.h"

namespace vantorix::apps::render {
namespace {

constexpr const char* vertexSource = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec2 texCoord;
layout(location = 3) in vec4 colour;
uniform mat4 modelView;
uniform mat4 projection;
uniform mat3 normalMatrix;
out vec3 eyePosition;
out vec3 eyeNormal;
out vec2 surfaceTexCoord;
out vec4 vertexColour;
void main() {
    vec4 inEye = modelView * vec4(position, 1.0);
    eyePosition = inEye.xyz;
    eyeNormal = normalMatrix * normal;
    surfaceTexCoord = texCoord;
    vertexColour = colour;
    gl_Position = projection * inEye;
}
)";

// Squares and square roots stand for the exact transfer curve of the screen, which costs more
// than everything else here. Colours leave multiplied by their opacity.
constexpr const char* fragmentSource = R"(
in vec3 eyePosition;
in vec3 eyeNormal;
in vec2 surfaceTexCoord;
in vec4 vertexColour;
uniform vec4 surfaceColour;
uniform vec3 emission;
uniform vec4 specular;  // w: shininess
uniform bool unlit;
uniform bool orthographic;
uniform vec3 ambient;
uniform vec4 lightPosition[LIGHTS];     // w = 0: direction to the light, of unit length
uniform vec4 lightDirection[LIGHTS];    // w: cosine of half the cone
uniform vec4 lightColour[LIGHTS];       // w: exponent of the cone
uniform vec4 lightAttenuation[LIGHTS];  // constant, linear, quadratic
uniform vec2 cutoff;               // least opacity shown, least opacity of what is shown
uniform sampler2D surfaceTexture;
out vec4 pixel;

void main() {
    vec4 base = surfaceColour * vertexColour;
#ifdef TEXTURED
    vec4 texel = texture(surfaceTexture, surfaceTexCoord);
    base.rgb *= texel.rgb;
#ifdef CUT_OUT
    base.a *= texel.a;
    if (base.a < cutoff.x) discard;
    base.a = max(base.a, cutoff.y);
#endif
#endif
    vec3 toEye = orthographic ? vec3(0.0, 0.0, 1.0) : normalize(-eyePosition);
    vec3 normal = normalize(eyeNormal);
    if (dot(eyeNormal, eyeNormal) < 1e-12) normal = toEye;
    if (dot(normal, toEye) < 0.0) normal = -normal;

    vec3 diffuse = ambient;
    vec3 shine = vec3(0.0);
    for (int i = 0; i < LIGHTS; ++i) {
        vec3 arriving = lightColour[i].rgb;
        vec3 toLight = lightPosition[i].xyz;
#ifdef LOCAL_LIGHTS
        toLight -= eyePosition * lightPosition[i].w;
        float range = length(toLight);
        toLight /= max(range, 1e-12);
        float fade = dot(lightAttenuation[i].xyz, vec3(1.0, range, range * range));
        float alongAxis = -dot(toLight, lightDirection[i].xyz);
        float cone = alongAxis < lightDirection[i].w
                         ? 0.0 : pow(max(alongAxis, 1e-6), lightColour[i].w);
        arriving *= cone / max(fade, 1e-6);
#endif
        diffuse += arriving * max(dot(normal, toLight), 0.0);
#ifdef SHINES
        float mirrored = max(dot(normal, normalize(toLight + toEye)), 0.0);
        shine += arriving * pow(max(mirrored, 1e-6), specular.w);
#endif
    }
    vec3 lit = emission * emission + base.rgb * base.rgb * diffuse + specular.rgb * shine;
    vec3 shown = unlit ? base.rgb : sqrt(min(lit, vec3(1.0)));
    pixel = vec4(shown * base.a, base.a);
}
)";

/// Blended pixels below this opacity are dropped, so that they hide nothing.
constexpr float faintest = 0.02f;

std::string fragmentSourceOf(const ShaderFeatures& features) {
    std::string source = "#version 330 core\n";
    if (features.texture != ShaderFeatures::PLAIN) source += "#define TEXTURED\n";
    if (features.texture == ShaderFeatures::CUT_OUT) source += "#define CUT_OUT\n";
    if (features.shines) source += "#define SHINES\n";
    if (features.localLights) source += "#define LOCAL_LIGHTS\n";
    return source + "#define LIGHTS " + std::to_string(features.lightCount) + "\n" + fragmentSource;
}

using FourFloats = std::array<float, 4>;

FourFloats fourFloats(const Eigen::Vector3f& v, float w) { return {v.x(), v.y(), v.z(), w}; }

Eigen::Matrix3f normalMatrixOf(const Eigen::Matrix4d& modelView) {
    // Cofactors are the inverse transpose but for a factor, and exist for flattened nodes, too.
    const Eigen::Matrix3d m = modelView.topLeftCorner<3, 3>();
    Eigen::Matrix3d cofactors;
    cofactors << m.col(1).cross(m.col(2)), m.col(2).cross(m.col(0)), m.col(0).cross(m.col(1));
    const double largest = cofactors.cwiseAbs().maxCoeff();
    if (largest > 0.0) cofactors /= largest;
    return cofactors.cast<float>();
}

}  // namespace

bool operator<(const ShaderFeatures& left, const ShaderFeatures& right) {
    return std::tie(left.texture, left.shines, left.localLights, left.lightCount) <
           std::tie(right.texture, right.shines, right.localLights, right.lightCount);
}

SceneShader::SceneShader(const ShaderFeatures& features)
    : lightCount_(static_cast<std::size_t>(features.lightCount)),
      program_(vertexSource, fragmentSourceOf(features)),
      modelView_(program_.uniform("modelView")),
      normalMatrix_(program_.uniform("normalMatrix")),
      colour_(program_.uniform("surfaceColour")),
      emission_(program_.uniform("emission")),
      specular_(program_.uniform("specular")),
      cutoff_(program_.uniform("cutoff")),
      unlit_(program_.uniform("unlit")) {}

void SceneShader::begin(const Viewpoint& viewpoint, const Lighting& lighting) const {
    program_.use();
    const Eigen::Matrix4f projection = viewpoint.projection.cast<float>();
    glUniformMatrix4fv(program_.uniform("projection"), 1, GL_FALSE, projection.data());
    glUniform1i(program_.uniform("orthographic"), viewpoint.orthographic);
    glUniform3fv(program_.uniform("ambient"), 1, lighting.ambient.data());
    setLights(viewpoint, lighting);
}

void SceneShader::setLights(const Viewpoint& viewpoint, const Lighting& lighting) const {
    std::vector<FourFloats> positions, directions, colours, attenuations;
    const Eigen::Matrix3d turn = viewpoint.view.topLeftCorner<3, 3>();
    const auto count = std::min(lighting.sources.size(), lightCount_);
    for (std::size_t i = 0; i < count; ++i) {
        const auto& light = lighting.sources[i];
        const Eigen::Vector4f position = (viewpoint.view * light.position).cast<float>();
        const Eigen::Vector3f direction = (turn * light.direction).cast<float>();
        positions.push_back(fourFloats(position.head<3>(), position.w()));
        directions.push_back(fourFloats(direction, light.coneCosine));
        colours.push_back(fourFloats(light.colour, light.coneExponent));
        attenuations.push_back(fourFloats(light.attenuation, 0.0f));
    }
    const auto set = [&](const char* name, const std::vector<FourFloats>& values) {
        if (values.empty()) return;
        glUniform4fv(program_.uniform(name), static_cast<GLsizei>(count), values[0].data());
    };
    set("lightPosition", positions);
    set("lightDirection", directions);
    set("lightColour", colours);
    set("lightAttenuation", attenuations);
}

void SceneShader::setWorld(const Eigen::Matrix4d& modelView) const {
    const Eigen::Matrix4f matrix = modelView.cast<float>();
    const Eigen::Matrix3f normalMatrix = normalMatrixOf(modelView);
    glUniformMatrix4fv(modelView_, 1, GL_FALSE, matrix.data());
    glUniformMatrix3fv(normalMatrix_, 1, GL_FALSE, normalMatrix.data());
}

void SceneShader::setSurface(const Surface& surface) const {
    glUniform4fv(colour_, 1, surface.colour.data());
    glUniform3fv(emission_, 1, surface.emission.data());
    glUniform4f(specular_, surface.specular.x(), surface.specular.y(), surface.specular.z(),
                surface.shininess);
    const bool cut = surface.alpha == Surface::CUT;
    glUniform2f(cutoff_, cut ? surface.alphaCutoff : faintest, cut ? 1.0f : 0.0f);
    glUniform1i(unlit_, surface.unlit);
}

}  // namespace vantorix::apps::render
