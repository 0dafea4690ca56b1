#include "tests/apps/ProcessRun.h"

#include <cstdlib>
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

ProcessRun runShell(const std::string& shellCommand, const test::TemporaryFolder& folder) {
    const test::TemporaryFolder outputs;
    const std::string out = outputs.path("out"), err = outputs.path("err");
    const std::string line = "cd '" + folder.path() + "' && { " + shellCommand +
                             "; } </dev/null >'" + out + "' 2>'" + err + "'";
    const int status = std::system(line.c_str());
    ProcessRun run;
    if (WIFEXITED(status)) run.exitCode = WEXITSTATUS(status);
    run.out = contentOf(out);
    run.err = contentOf(err);
    return run;
}

}  // namespace vantorix::apps
