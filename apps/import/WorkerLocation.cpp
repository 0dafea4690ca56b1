#include "apps/import/WorkerLocation.h"

#include <filesystem>
#include <unistd.h>

#include "apps/import/ImportError.h"

namespace vantorix::apps::import {

std::string findWorker(const std::string& given) {
    const auto runnable = [](const std::filesystem::path& path) {
        std::error_code error;
        return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
    };
    if (!given.empty()) {
        if (runnable(given)) return given;
        throw RefusedError("the import worker " + given + " cannot be run");
    }
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* const place : {"", "../libexec/vantorix"}) {
        const auto candidate = folder / place / "vantorix-import-worker";
        if (runnable(candidate)) return candidate.string();
    }
    throw RefusedError("the program vantorix-import-worker is missing beside " + folder.string());
}

}  // namespace vantorix::apps::import
