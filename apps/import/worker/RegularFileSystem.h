#pragma once

#include <cstdint>
#include <string>

#include <assimp/DefaultIOSystem.h>

namespace vantorix::apps::import {

/// Lets a model name other files, but opens regular files only (a model must not be able to wait
/// for a pipe or a device), only for reading, and none above the size limit.
class RegularFileSystem : public Assimp::DefaultIOSystem {
public:
    explicit RegularFileSystem(std::uint64_t mostBytes) : mostBytes_(mostBytes) {}

    bool Exists(const char* file) const override;
    Assimp::IOStream* Open(const char* file, const char* mode) override;

private:
    std::uint64_t mostBytes_;
};

}  // namespace vantorix::apps::import
