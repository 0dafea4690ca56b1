#include "apps/render/TextureStore.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "apps/render/Picture.h"
#include "apps/render/RenderError.h"
#include "apps/render/TextureDecoder.h"

namespace vantorix::apps::render {
namespace {

/// A picture of about a thousand pixels a side gains nothing from larger textures.
constexpr int largestSide = 1024;
constexpr std::size_t mostBytes = std::size_t{1} << 30;

Picture plainPixels(const ImageFile& file) {
    const auto rowBytes = static_cast<std::size_t>(file.width) * 4;
    if (file.height <= 0 || file.bytes.size() / rowBytes < static_cast<std::size_t>(file.height)) {
        throw RenderError("pixels are missing");
    }
    Picture picture(file.width, file.height);
    for (int y = 0; y < file.height; ++y) {
        const auto* row =
            file.bytes.data() + static_cast<std::size_t>(file.height - 1 - y) * rowBytes;
        std::copy_n(row, rowBytes, picture.pixel(0, y));
    }
    return picture;
}

Picture decode(const ImageFile& file) {
    return file.width > 0 ? plainPixels(file) : decodeTexture(file.bytes, file.name);
}

bool hasAlpha(const Picture& picture) {
    for (std::size_t i = 3; i < picture.rgba.size(); i += 4) {
        if (picture.rgba[i] < 250) return true;  // Lossy files have stray values just below 255.
    }
    return false;
}

/// Levels are made here: the driver's own would compile a shader for them in every run.
GLuint upload(Picture picture) {
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    for (GLint level = 0;; ++level) {
        glTexImage2D(GL_TEXTURE_2D, level, GL_RGBA8, picture.width, picture.height, 0, GL_RGBA,
                     GL_UNSIGNED_BYTE, picture.rgba.data());
        if (picture.width == 1 && picture.height == 1) break;
        picture = halved(picture);
    }
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    return texture;
}

}  // namespace

TextureStore::TextureStore(ImageSource source) : source_(std::move(source)) {}

TextureStore::~TextureStore() {
    for (const auto& [id, texture] : textures_) glDeleteTextures(1, &texture.name);
}

TextureStore::Texture TextureStore::get(const std::string& imageId) {
    if (imageId.empty()) return {};
    const auto known = textures_.find(imageId);
    if (known != textures_.end()) return known->second;
    return textures_[imageId] = load(imageId);
}

TextureStore::Texture TextureStore::load(const std::string& imageId) {
    std::string name = imageId;
    try {
        const ImageFile file = source_(imageId);
        if (!file.name.empty()) name = file.name;
        if (bytes_ > mostBytes)
            throw RenderError("the textures before it fill the memory for them");
        const Picture picture = shrunk(decode(file), largestSide);
        bytes_ += picture.rgba.size();
        return {upload(picture), hasAlpha(picture)};
    } catch (const std::exception& error) {
        notes_.push_back("texture " + name + ": " + error.what());
        return {};
    }
}

}  // namespace vantorix::apps::render
