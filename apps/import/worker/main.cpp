// Reads one model file with Assimp and sends what it holds to the program that started it.
// It never touches the scene library and trusts nothing that Assimp returns.

#include <filesystem>
#include <new>
#include <signal.h>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <unistd.h>

#include <assimp/Importer.hpp>
#include <assimp/config.h>
#include <assimp/importerdesc.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include "apps/import/WorkerMessages.h"
#include "apps/import/worker/RegularFileSystem.h"
#include "apps/import/worker/SceneConverter.h"
#include "apps/import/worker/WorkerChannel.h"

namespace {

using namespace vantorix::apps::import;

/// Assimp turns every exception into a text, so that memory that ran out is remembered here.
bool memoryRanOut = false;

[[noreturn]] void onMemoryRunningOut() {
    memoryRanOut = true;
    throw std::bad_alloc();
}

/// Assimp tries other readers on unknown file endings, and what those say would mislead.
std::string reasonFrom(const Assimp::Importer& importer, const std::string& file) {
    const auto ending = std::filesystem::path(file).extension().string();
    const std::string text = importer.GetErrorString();
    if (!importer.IsExtensionSupported(ending) || text.rfind("No suitable reader", 0) == 0) {
        return "is of no known model format";
    }
    return text.empty() ? "cannot be read" : "cannot be read: " + text;
}

std::string formatName(const Assimp::Importer& importer) {
    const auto number = importer.GetPropertyInteger("importerIndex", -1);
    if (number < 0 || static_cast<std::size_t>(number) >= importer.GetImporterCount()) return "";
    const aiImporterDesc* const description =
        importer.GetImporterInfo(static_cast<std::size_t>(number));
    return description && description->mName ? description->mName : "";
}

ModelDocument readModel(Assimp::Importer& importer, const WorkerRequest& request) {
    importer.SetIOHandler(new RegularFileSystem(request.limits.fileBytes));  // Takes it over.
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    const aiScene* const scene = importer.ReadFile(
        request.file, request.triangulate ? static_cast<unsigned int>(aiProcess_Triangulate) : 0u);
    if (!scene) {
        if (memoryRanOut) throw std::bad_alloc();
        throw RefusedError(reasonFrom(importer, request.file));
    }
    return SceneConverter(*scene, request.limits).convert(formatName(importer));
}

WorkerAnswer answerTo(Assimp::Importer& importer, const WorkerRequest& request) {
    WorkerAnswer answer;
    try {
        answer.document = readModel(importer, request);
        answer.status = WorkerAnswer::DONE;
    } catch (const LimitError& error) {
        answer.status = WorkerAnswer::LIMIT;
        answer.limit = error.limit();
        answer.reason = error.what();
    } catch (const RefusedError& error) {
        answer.reason = error.what();
    }
    return answer;
}

int work() {
    Assimp::Importer importer;
    const auto answer = writeAnswer(answerTo(importer, readRequest(receiveMessage())));
    const int code = sendMessage(answer) ? 0 : 1;
    // Without any clean-up: the scene is large, and releasing a broken one could still crash.
    ::_exit(code);
}

}  // namespace

int main() try {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::set_new_handler(onMemoryRunningOut);
    return work();
} catch (const std::bad_alloc&) {
    ::_exit(vantorix::apps::import::workerOutOfMemory);
} catch (const std::exception&) {
    ::_exit(2);
}
