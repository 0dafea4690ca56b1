#include "apps/render/TextureDecoder.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <memory>

#include <SDL.h>
#include <SDL_image.h>
#include <png.h>

#include "apps/render/ClaimedSize.h"
#include "apps/render/RenderError.h"

namespace vantorix::apps::render {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct SurfaceDeleter {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, SurfaceDeleter>;

/// One format that SDL2_image reads.
struct Format {
    int (*recognises)(SDL_RWops*);  ///< Empty: the file's name has to say it.
    ClaimedSize (*claimedSize)(const Bytes&);
    SDL_Surface* (*load)(SDL_RWops*);
};

void requireAllowed(const ClaimedSize& size) {
    if (size.width == 0 || size.height == 0) throw RenderError("the picture's header is damaged");
    if (size.width <= mostTexturePixels / size.height) return;
    throw RenderError("the picture has " + std::to_string(size.width) + "x" +
                      std::to_string(size.height) + " pixels");
}

bool isPng(const Bytes& bytes) { return bytes.size() >= 8 && png_sig_cmp(bytes.data(), 0, 8) == 0; }

Picture decodePng(const Bytes& bytes) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    const std::unique_ptr<png_image, void (*)(png_image*)> guard(&image, png_image_free);
    if (!png_image_begin_read_from_memory(&image, bytes.data(), bytes.size())) {
        throw RenderError(image.message);
    }
    image.format = PNG_FORMAT_RGBA;
    requireAllowed({image.width, image.height});
    Picture picture(static_cast<int>(image.width), static_cast<int>(image.height));
    if (!png_image_finish_read(&image, nullptr, picture.rgba.data(), -4 * picture.width, nullptr)) {
        throw RenderError(image.message);
    }
    return picture;
}

bool isNamedTga(const std::string& name) {
    std::string ending = name.size() > 4 ? name.substr(name.size() - 4) : name;
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending == ".tga" || ending == "tga";
}

Format formatOf(SDL_RWops* source, const std::string& name) {
    static const Format recognised[] = {
        {IMG_isJPG, claimedSizeOfJpeg, IMG_LoadJPG_RW},
        {IMG_isBMP, claimedSizeOfBmp, IMG_LoadBMP_RW},
        {IMG_isGIF, claimedSizeOfGif, IMG_LoadGIF_RW},
    };
    for (const auto& format : recognised) {
        if (format.recognises(source)) return format;
    }
    if (isNamedTga(name)) return {nullptr, claimedSizeOfTga, IMG_LoadTGA_RW};
    throw RenderError("not a picture format that can be read");
}

Surface loadSurface(const Bytes& bytes, const std::string& name) {
    constexpr auto most = static_cast<std::size_t>(std::numeric_limits<int>::max());
    const std::unique_ptr<SDL_RWops, int (*)(SDL_RWops*)> source(
        SDL_RWFromConstMem(bytes.data(), static_cast<int>(std::min(bytes.size(), most))),
        SDL_RWclose);
    if (!source) throw RenderError("the picture is empty");
    const Format format = formatOf(source.get(), name);
    requireAllowed(format.claimedSize(bytes));
    return Surface(format.load(source.get()));
}

Picture pictureOf(const Surface& loaded) {
    const Surface surface(loaded ? SDL_ConvertSurfaceFormat(loaded.get(), SDL_PIXELFORMAT_RGBA32, 0)
                                 : nullptr);
    if (!surface) throw RenderError(SDL_GetError());
    Picture picture(surface->w, surface->h);
    const auto* rows = static_cast<const std::uint8_t*>(surface->pixels);
    for (int y = 0; y < picture.height; ++y) {
        const auto* row =
            rows + static_cast<std::ptrdiff_t>(picture.height - 1 - y) * surface->pitch;
        std::copy_n(row, picture.width * 4, picture.pixel(0, y));
    }
    return picture;
}

}  // namespace

Picture decodeTexture(const Bytes& bytes, const std::string& name) {
    return isPng(bytes) ? decodePng(bytes) : pictureOf(loadSurface(bytes, name));
}

}  // namespace vantorix::apps::render
