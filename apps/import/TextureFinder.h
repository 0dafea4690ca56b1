#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace vantorix::apps::import {

/// Finds the picture files that a model names, as they lie on this machine: below the model's
/// folder, with '\' for '/', in another case, percent-encoded, or with a folder that only existed
/// where the model was made. Only regular files count.
class TextureFinder {
public:
    explicit TextureFinder(const std::string& modelFile);

    /// Path of the file that the model calls @p name; empty when there is none.
    std::string find(const std::string& name);

private:
    using Names = std::multimap<std::string, std::string>;

    std::string findPath(const std::filesystem::path& path);
    std::string findInAnyCase(const std::filesystem::path& relative);
    const Names& namesIn(const std::filesystem::path& folder);

    std::filesystem::path folder_;
    std::map<std::filesystem::path, Names> listings_;  ///< Lower case to real names, per folder.
};

}  // namespace vantorix::apps::import
