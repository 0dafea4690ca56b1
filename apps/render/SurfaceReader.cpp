#include "apps/render/SurfaceReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/material/Material.h"
#include "scene/material/MaterialParameter.h"

namespace vantorix::apps::render {
namespace {

using Eigen::Vector3f;

/// The finite numbers at the start of @p text, apart by blanks or commas.
std::vector<float> numbersIn(const std::string& text) {
    std::vector<float> numbers;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (numbers.size() < 4) {
        while (at != end && (*at == ' ' || *at == ',')) ++at;
        float number = 0.0f;
        const auto parsed = std::from_chars(at, end, number);
        if (parsed.ec != std::errc() || !std::isfinite(number)) break;
        numbers.push_back(number);
        at = parsed.ptr;
    }
    return numbers;
}

/// The parameters of one material as values.
class Parameters {
public:
    explicit Parameters(const scene::Material& material) : material_(material) {}

    std::string text(const char* name) const {
        const auto parameter = material_.getParameterByName(name);
        return parameter ? parameter->getValue() : std::string();
    }

    float number(const char* name, float otherwise) const {
        const auto numbers = numbersIn(text(name));
        return numbers.empty() ? otherwise : numbers[0];
    }

    Vector3f colour(const char* name, const Vector3f& otherwise) const {
        const auto numbers = numbersIn(text(name));
        return numbers.size() < 3 ? otherwise : Vector3f(numbers[0], numbers[1], numbers[2]);
    }

    /// The fourth number of a colour.
    float alpha(const char* name) const {
        const auto numbers = numbersIn(text(name));
        return numbers.size() < 4 ? 1.0f : numbers[3];
    }

private:
    const scene::Material& material_;
};

float unit(float value) { return std::clamp(value, 0.0f, 1.0f); }

Vector3f unit(const Vector3f& colour) { return colour.cwiseMax(0.0f).cwiseMin(1.0f); }

/// Without a picture of its surroundings metal would be black: it keeps half of its colour.
void readMetal(const Parameters& parameters, Surface& surface) {
    const float metallic = unit(parameters.number("metallic", 0.0f));
    const float gloss = 1.0f - unit(parameters.number("roughness", 1.0f));
    const Vector3f colour = surface.colour.head<3>();
    surface.specular = (Vector3f::Constant(0.04f) * (1.0f - metallic) + colour * metallic) * gloss;
    surface.shininess = 4.0f + 100.0f * gloss * gloss;
    surface.colour.head<3>() = colour * (1.0f - 0.5f * metallic);
}

void readShine(const Parameters& parameters, Surface& surface) {
    if (!parameters.text("metallic").empty() || !parameters.text("roughness").empty()) {
        readMetal(parameters, surface);
        return;
    }
    const float exponent = parameters.number("shininess", 0.0f);
    if (exponent <= 0.0f) return;  // Files that describe no shine often leave a white colour.
    const float strength = unit(parameters.number("shininessStrength", 1.0f));
    surface.specular = unit(parameters.colour("specular", Vector3f::Zero())) * strength * 0.5f;
    surface.shininess = std::clamp(exponent, 1.0f, 200.0f);
}

void readAlpha(const Parameters& parameters, Surface& surface) {
    const std::string mode = parameters.text("alphaMode");
    surface.alphaCutoff = unit(parameters.number("alphaCutoff", surface.alphaCutoff));
    if (mode == "MASK") surface.alpha = Surface::CUT;
    if (mode == "OPAQUE") surface.alpha = Surface::IGNORED;
    // Elsewhere the fourth number of a colour says nothing about opacity.
    const float otherwise = mode.empty() ? 1.0f : parameters.alpha("diffuse");
    surface.colour.w() = mode == "OPAQUE" ? 1.0f : unit(parameters.number("opacity", otherwise));
}

}  // namespace

Surface readSurface(const scene::Material& material) {
    const Parameters parameters(material);
    Surface surface;
    surface.imageId = parameters.text("diffuseTexture");
    surface.texCoordSet =
        static_cast<int>(std::clamp(parameters.number("diffuseTextureSet", 0.0f), 0.0f, 7.0f));
    const Vector3f neutral =
        surface.imageId.empty() ? surface.colour.head<3>().eval() : Vector3f::Ones().eval();
    surface.colour.head<3>() = unit(parameters.colour("diffuse", neutral));
    surface.emission = unit(parameters.colour("emissive", surface.emission));
    surface.unlit = material.getTechnique() == "unlit" || material.getEffectID() == "import_unlit";
    readShine(parameters, surface);
    readAlpha(parameters, surface);
    return surface;
}

}  // namespace vantorix::apps::render
