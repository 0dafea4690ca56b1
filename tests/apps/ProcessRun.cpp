#include "tests/apps/ProcessRun.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>

namespace vantorix::apps {
namespace {

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "vantorix_XXXXXX";
    path_ = mkdtemp(pattern.data()) ? pattern : std::string();
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

void TemporaryFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ + "/" + name, std::ios::binary) << content;
}

bool TemporaryFolder::has(const std::string& name) const {
    return std::filesystem::exists(path_ + "/" + name);
}

std::vector<std::string> TemporaryFolder::list() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

ProcessRun runShell(const std::string& shellCommand, const TemporaryFolder& folder) {
    const TemporaryFolder outputs;
    const std::string out = outputs.getPath() + "/out", err = outputs.getPath() + "/err";
    const std::string line = "cd '" + folder.getPath() + "' && { " + shellCommand +
                             "; } </dev/null >'" + out + "' 2>'" + err + "'";
    const int status = std::system(line.c_str());
    ProcessRun run;
    if (WIFEXITED(status)) run.exitCode = WEXITSTATUS(status);
    run.out = contentOf(out);
    run.err = contentOf(err);
    return run;
}

}  // namespace vantorix::apps
