#include "apps/import/worker/TextureConverter.h"

#include <cstring>

#include <assimp/texture.h>

#include "apps/import/ImportError.h"
#include "apps/import/ImportLimits.h"
#include "apps/import/ImportReport.h"
#include "apps/import/worker/AssimpValues.h"

namespace vantorix::apps::import {
namespace {

void copyPixels(const aiTexture& source, ModelTexture& texture) {
    texture.format = "rgba8";
    texture.width = source.mWidth;
    texture.height = source.mHeight;
    const std::size_t pixels = std::size_t{source.mWidth} * source.mHeight;
    texture.bytes.reserve(pixels * 4);
    for (std::size_t i = 0; i < pixels; ++i) {
        const aiTexel& texel = source.pcData[i];
        texture.bytes.insert(texture.bytes.end(), {texel.r, texel.g, texel.b, texel.a});
    }
}

}  // namespace

ModelTexture convertTexture(const aiTexture& source, const ImportLimits& limits,
                            ImportReport& report) {
    ModelTexture texture;
    texture.name = textOf(source.mFilename);
    if (!source.pcData) {
        report.add("embedded texture \"" + texture.name + "\" is empty");
        return texture;
    }
    const bool plain = source.mHeight > 0;
    requireWithin("bytes in one embedded texture",
                  std::uint64_t{source.mWidth} * (plain ? std::uint64_t{source.mHeight} * 4 : 1),
                  limits.fileBytes);
    if (plain) {
        copyPixels(source, texture);
        return texture;
    }
    texture.format.assign(source.achFormatHint,
                          ::strnlen(source.achFormatHint, sizeof(source.achFormatHint)));
    const auto bytes = reinterpret_cast<const std::uint8_t*>(source.pcData);
    texture.bytes.assign(bytes, bytes + source.mWidth);
    return texture;
}

}  // namespace vantorix::apps::import
