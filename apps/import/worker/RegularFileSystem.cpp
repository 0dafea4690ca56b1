#include "apps/import/worker/RegularFileSystem.h"

#include <filesystem>

namespace vantorix::apps::import {

bool RegularFileSystem::Exists(const char* file) const {
    std::error_code error;
    return file && std::filesystem::is_regular_file(file, error);
}

Assimp::IOStream* RegularFileSystem::Open(const char* file, const char* mode) {
    const bool reads = mode && std::string(mode).find_first_of("wa+") == std::string::npos;
    if (!reads || !Exists(file)) return nullptr;
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error || size > mostBytes_) return nullptr;
    return DefaultIOSystem::Open(file, mode);
}

}  // namespace vantorix::apps::import
