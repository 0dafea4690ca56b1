#include "apps/import/TextureFinder.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <dirent.h>
#include <memory>

namespace vantorix::apps::import {
namespace {

namespace fs = std::filesystem;

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool isRegularFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

struct FolderCloser {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

std::string withoutPercentCodes(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        int code = 0;
        const char* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2 && code > 0) {
            decoded += static_cast<char>(code);
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

std::string withUsualSeparators(std::string name) {
    if (name.rfind("file://", 0) == 0) name.erase(0, 7);
    std::replace(name.begin(), name.end(), '\\', '/');
    return name.substr(0, name.find('\0'));
}

}  // namespace

TextureFinder::TextureFinder(const std::string& modelFile)
    : folder_(fs::path(modelFile).parent_path()) {
    if (folder_.empty()) folder_ = ".";
}

std::string TextureFinder::find(const std::string& name) {
    const std::string path = withUsualSeparators(name);
    if (path.empty()) return "";
    std::string found = findPath(path);
    if (found.empty() && path.find('%') != std::string::npos) {
        found = findPath(withoutPercentCodes(path));
    }
    return found;
}

std::string TextureFinder::findPath(const fs::path& path) {
    // An absolute path replaces the folder it is appended to.
    if (isRegularFile(folder_ / path)) return (folder_ / path).string();
    const std::string found = findInAnyCase(path.relative_path());
    return found.empty() ? findInAnyCase(path.filename()) : found;
}

std::string TextureFinder::findInAnyCase(const fs::path& relative) {
    fs::path place = folder_;
    for (const auto& step : relative) {
        if (step == "." || step == "..") {
            place /= step;
            continue;
        }
        const Names& names = namesIn(place);
        const auto match = names.find(lowerCase(step.string()));
        if (match == names.end()) return "";
        place /= match->second;
    }
    return isRegularFile(place) ? place.string() : "";
}

const TextureFinder::Names& TextureFinder::namesIn(const fs::path& folder) {
    const auto [listing, added] = listings_.try_emplace(folder);
    if (!added) return listing->second;
    // The iterator of the standard library ends the program where it gets no memory.
    const std::unique_ptr<DIR, FolderCloser> opened(::opendir(folder.c_str()));
    while (const dirent* const entry = opened ? ::readdir(opened.get()) : nullptr) {
        listing->second.emplace(lowerCase(entry->d_name), entry->d_name);
    }
    return listing->second;
}

}  // namespace vantorix::apps::import
