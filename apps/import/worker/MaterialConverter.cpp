#include "apps/import/worker/MaterialConverter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include <assimp/GltfMaterial.h>
#include <assimp/material.h>
#include <assimp/scene.h>

#include "apps/import/worker/AssimpValues.h"

namespace vantorix::apps::import {
namespace {

struct PropertyName {
    const char* parameter;
    const char* key;
};

// A parameter that several keys give takes the first one that the material has.
constexpr PropertyName colorNames[] = {
    {"diffuse", "$clr.base"},
    {"diffuse", "$clr.diffuse"},
    {"ambient", "$clr.ambient"},
    {"specular", "$clr.specular"},
    {"emissive", "$clr.emissive"},
    {"reflective", "$clr.reflective"},
    {"transparent", "$clr.transparent"},
};

constexpr PropertyName numberNames[] = {
    {"shininess", "$mat.shininess"},
    {"shininessStrength", "$mat.shinpercent"},
    {"opacity", "$mat.opacity"},
    {"reflectivity", "$mat.reflectivity"},
    {"refractionIndex", "$mat.refracti"},
    {"bumpScale", "$mat.bumpscaling"},
    {"metallic", "$mat.metallicFactor"},
    {"roughness", "$mat.roughnessFactor"},
    {"glossiness", "$mat.glossinessFactor"},
    {"emissiveIntensity", "$mat.emissiveIntensity"},
    {"alphaCutoff", "$mat.gltf.alphaCutoff"},
};

struct TextureName {
    const char* parameter;
    aiTextureType type;
};

constexpr TextureName textureNames[] = {
    {"diffuseTexture", aiTextureType_BASE_COLOR},
    {"diffuseTexture", aiTextureType_DIFFUSE},
    {"normalTexture", aiTextureType_NORMAL_CAMERA},
    {"normalTexture", aiTextureType_NORMALS},
    {"heightTexture", aiTextureType_HEIGHT},
    {"emissiveTexture", aiTextureType_EMISSION_COLOR},
    {"emissiveTexture", aiTextureType_EMISSIVE},
    {"specularTexture", aiTextureType_SPECULAR},
    {"ambientTexture", aiTextureType_AMBIENT},
    {"opacityTexture", aiTextureType_OPACITY},
    {"shininessTexture", aiTextureType_SHININESS},
    {"occlusionTexture", aiTextureType_AMBIENT_OCCLUSION},
    {"occlusionTexture", aiTextureType_LIGHTMAP},
    {"metallicTexture", aiTextureType_METALNESS},
    {"roughnessTexture", aiTextureType_DIFFUSE_ROUGHNESS},
    {"reflectionTexture", aiTextureType_REFLECTION},
    {"displacementTexture", aiTextureType_DISPLACEMENT},
};

constexpr const char* shadingNames[] = {
    "gouraud",    "flat",     "gouraud",       "phong", "blinn",   "toon",
    "oren_nayar", "minnaert", "cook_torrance", "unlit", "fresnel", "pbr",
};

std::string numberText(float number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return std::string(text.data(), end);
}

bool hasParameter(const ModelMaterial& material, const char* name) {
    return std::any_of(material.parameters.begin(), material.parameters.end(),
                       [name](const ModelParameter& p) { return p.name == name; });
}

bool hasTexture(const ModelMaterial& material, const char* name) {
    return std::any_of(material.textures.begin(), material.textures.end(),
                       [name](const ModelTextureUse& use) { return use.name == name; });
}

std::string shadingOf(const aiMaterial& source) {
    int model = 0;
    if (source.Get(AI_MATKEY_SHADING_MODEL, model) != aiReturn_SUCCESS) model = 0;
    const auto count = static_cast<int>(std::size(shadingNames));
    return shadingNames[model >= 0 && model < count ? model : 0];
}

}  // namespace

ModelMaterial MaterialConverter::convert(const aiMaterial& source) {
    ModelMaterial material;
    aiString name;
    if (source.Get(AI_MATKEY_NAME, name) == aiReturn_SUCCESS) material.name = textOf(name);
    material.shading = shadingOf(source);
    addColors(source, material);
    addNumbers(source, material);
    addFlags(source, material);
    addTextures(source, material);
    return material;
}

void MaterialConverter::addColors(const aiMaterial& source, ModelMaterial& material) {
    for (const auto& [parameter, key] : colorNames) {
        aiColor4D color;
        if (hasParameter(material, parameter)) continue;
        if (source.Get(key, 0, 0, color) != aiReturn_SUCCESS) continue;
        std::string text;
        bool finite = true;
        for (const float component : {color.r, color.g, color.b, color.a}) {
            finite = finite && std::isfinite(component);
            text += (text.empty() ? "" : " ") + numberText(component);
        }
        if (finite) {
            material.parameters.push_back({parameter, "float4", text});
        } else {
            note(material, "colour that is no number dropped");
        }
    }
}

void MaterialConverter::addNumbers(const aiMaterial& source, ModelMaterial& material) {
    for (const auto& [parameter, key] : numberNames) {
        float number = 0.0f;
        if (source.Get(key, 0, 0, number) != aiReturn_SUCCESS) continue;
        if (std::isfinite(number)) {
            material.parameters.push_back({parameter, "float", numberText(number)});
        } else {
            note(material, "parameter that is no number dropped");
        }
    }
}

void MaterialConverter::addFlags(const aiMaterial& source, ModelMaterial& material) {
    int flag = 0;
    if (source.Get(AI_MATKEY_TWOSIDED, flag) == aiReturn_SUCCESS) {
        material.parameters.push_back({"twoSided", "bool", flag ? "true" : "false"});
    }
    aiString alphaMode;
    if (source.Get(AI_MATKEY_GLTF_ALPHAMODE, alphaMode) == aiReturn_SUCCESS) {
        material.parameters.push_back({"alphaMode", "string", textOf(alphaMode)});
    }
}

void MaterialConverter::addTextures(const aiMaterial& source, ModelMaterial& material) {
    for (const auto& [parameter, type] : textureNames) {
        aiString file;
        unsigned int set = 0;
        if (hasTexture(material, parameter)) continue;
        if (source.GetTexture(type, 0, &file, nullptr, &set) != aiReturn_SUCCESS) continue;
        if (file.length == 0) continue;
        if (set >= mostTexCoordSets) {
            set = 0;
            note(material, "texture coordinate set out of range, the first one is used instead");
        }
        const auto text = textOf(file);
        material.textures.push_back({parameter, text, findEmbedded(text), set});
    }
}

void MaterialConverter::note(const ModelMaterial& material, const char* what) {
    report_.add("material \"" + material.name + "\": " + what);
}

std::int32_t MaterialConverter::findEmbedded(const std::string& file) const {
    if (!scene_.mTextures) return -1;
    // "*3" is the fourth embedded texture; other formats refer to them by file name.
    if (file[0] == '*') {
        std::uint32_t number = 0;
        const char* const end = file.data() + file.size();
        const auto parsed = std::from_chars(file.data() + 1, end, number);
        const bool valid = parsed.ec == std::errc() && parsed.ptr == end;
        return valid && number < scene_.mNumTextures ? static_cast<std::int32_t>(number) : -1;
    }
    for (unsigned int i = 0; i < scene_.mNumTextures; ++i) {
        const aiTexture* const texture = scene_.mTextures[i];
        if (texture && textOf(texture->mFilename) == file) return static_cast<std::int32_t>(i);
    }
    return -1;
}

}  // namespace vantorix::apps::import
