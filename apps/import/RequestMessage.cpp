#include <nlohmann/json.hpp>

#include "apps/import/WorkerMessages.h"

namespace vantorix::apps::import {
namespace {

using nlohmann::json;

std::chrono::milliseconds::rep milliseconds(std::chrono::milliseconds time) { return time.count(); }

}  // namespace

std::vector<std::uint8_t> writeRequest(const WorkerRequest& request) {
    const auto& limits = request.limits;
    return json::to_cbor({{"file", request.file},
                          {"triangulate", request.triangulate},
                          {"fileBytes", limits.fileBytes},
                          {"memoryBytes", limits.memoryBytes},
                          {"answerBytes", limits.answerBytes},
                          {"cpuTime", milliseconds(limits.cpuTime)},
                          {"wallTime", milliseconds(limits.wallTime)},
                          {"nodes", limits.nodes},
                          {"depth", limits.depth},
                          {"vertices", limits.vertices},
                          {"faces", limits.faces},
                          {"corners", limits.corners},
                          {"influences", limits.influences},
                          {"keys", limits.keys},
                          {"items", limits.items}});
}

WorkerRequest readRequest(const std::vector<std::uint8_t>& message) try {
    const json object = json::from_cbor(message);
    WorkerRequest request;
    auto& limits = request.limits;
    object.at("file").get_to(request.file);
    object.at("triangulate").get_to(request.triangulate);
    object.at("fileBytes").get_to(limits.fileBytes);
    object.at("memoryBytes").get_to(limits.memoryBytes);
    object.at("answerBytes").get_to(limits.answerBytes);
    limits.cpuTime = std::chrono::duration_cast<std::chrono::seconds>(
        std::chrono::milliseconds(object.at("cpuTime").get<std::int64_t>()));
    limits.wallTime = std::chrono::milliseconds(object.at("wallTime").get<std::int64_t>());
    object.at("nodes").get_to(limits.nodes);
    object.at("depth").get_to(limits.depth);
    object.at("vertices").get_to(limits.vertices);
    object.at("faces").get_to(limits.faces);
    object.at("corners").get_to(limits.corners);
    object.at("influences").get_to(limits.influences);
    object.at("keys").get_to(limits.keys);
    object.at("items").get_to(limits.items);
    return request;
} catch (const json::exception& error) {
    throw RefusedError(std::string("broken request: ") + error.what());
}

}  // namespace vantorix::apps::import
