#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace vantorix::test {

/// An empty folder that goes with this object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "vantorix_XXXXXX").string();
        if (::mkdtemp(name.data())) path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code error;
        if (!path_.empty()) std::filesystem::remove_all(path_, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Writes the file, with the folders it needs, and returns its path.
    std::string write(const std::string& name, const std::string& content) const {
        const auto file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }
    std::string path(const std::string& name = "") const { return (path_ / name).string(); }
    bool has(const std::string& name) const { return std::filesystem::exists(path_ / name); }

    /// Names of all that is in it, in order.
    std::vector<std::string> list() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path path_;
};

}  // namespace vantorix::test
