#include "apps/vantorix/ImageFiles.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "apps/import/ModelDocument.h"

namespace vantorix::apps::cli {
namespace {

constexpr std::uintmax_t largestFile = std::uintmax_t{256} << 20;

std::vector<std::uint8_t> bytesOf(const std::string& path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error) throw std::runtime_error(error.message());
    if (size > largestFile) throw std::runtime_error("the file is larger than 256 MiB");
    std::vector<std::uint8_t> bytes(size);
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    if (!file) throw std::runtime_error("cannot be read");
    return bytes;
}

render::ImageFile embeddedFile(const import::ModelTexture& texture) {
    render::ImageFile file;
    file.name = texture.name.empty() ? "embedded." + texture.format : texture.name;
    file.bytes = texture.bytes;
    if (texture.format != "rgba8") return file;
    file.width = static_cast<int>(texture.width);
    file.height = static_cast<int>(texture.height);
    return file;
}

}  // namespace

render::ImageSource imagesOf(const import::ImportResult& import) {
    return [&import](const std::string& imageId) {
        const auto found = import.images.find(imageId);
        if (found == import.images.end()) throw std::runtime_error("unknown image");
        const auto& source = found->second;
        if (source.embedded) return embeddedFile(*source.embedded);
        if (source.path.empty()) throw std::runtime_error("there is no such file");
        return render::ImageFile{source.path, bytesOf(source.path), 0, 0};
    };
}

}  // namespace vantorix::apps::cli
