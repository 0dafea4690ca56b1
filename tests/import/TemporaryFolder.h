#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

/// A folder that goes with the test.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "importXXXXXX").string();
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

private:
    std::filesystem::path path_;
};
