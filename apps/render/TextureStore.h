#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <boost/function.hpp>
#include <epoxy/gl.h>

#include "apps/render/ImageFile.h"

namespace vantorix::apps::render {

struct Picture;

/// Textures of a scene's images, decoded and handed to the driver when they are first asked for.
class TextureStore {
public:
    struct Texture {
        GLuint name = 0;        ///< 0: the image cannot be read.
        bool hasAlpha = false;  ///< Some pixel is not opaque.
    };

    explicit TextureStore(ImageSource source);
    ~TextureStore();

    TextureStore(const TextureStore&) = delete;
    TextureStore& operator=(const TextureStore&) = delete;

    /// The texture of an image; without ID none.
    Texture get(const std::string& imageId);

    /// One line for each image that could not be read.
    const std::vector<std::string>& getNotes() const { return notes_; }

private:
    Texture load(const std::string& imageId);

    ImageSource source_;
    std::size_t bytes_ = 0;  ///< Of all textures, without their smaller levels.
    std::map<std::string, Texture> textures_;
    std::vector<std::string> notes_;
};

}  // namespace vantorix::apps::render
