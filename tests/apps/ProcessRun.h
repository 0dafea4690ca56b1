#pragma once

#include <string>
#include <vector>

namespace vantorix::apps {

/// What a finished process left behind.
struct ProcessRun {
    int exitCode = -1;  ///< -1 when it ended by a signal.
    std::string out;
    std::string err;
};

/// An empty folder that goes with this object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& getPath() const { return path_; }
    void write(const std::string& name, const std::string& content) const;
    bool has(const std::string& name) const;
    /// Names of all files, in order.
    std::vector<std::string> list() const;

private:
    std::string path_;
};

/// Runs @p shellCommand in @p folder. Standard input is empty.
ProcessRun runShell(const std::string& shellCommand, const TemporaryFolder& folder);

}  // namespace vantorix::apps
