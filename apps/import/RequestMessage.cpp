#include <cstring>
#include <type_traits>

#include "apps/import/WorkerMessages.h"

namespace vantorix::apps::import {

static_assert(std::is_trivially_copyable_v<ImportLimits>);

std::vector<std::uint8_t> writeRequest(const WorkerRequest& request) {
    std::vector<std::uint8_t> message(sizeof(ImportLimits));
    std::memcpy(message.data(), &request.limits, sizeof(ImportLimits));
    message.push_back(request.triangulate ? 1 : 0);
    message.insert(message.end(), request.file.begin(), request.file.end());
    return message;
}

WorkerRequest readRequest(const std::vector<std::uint8_t>& message) {
    constexpr auto begin = static_cast<std::ptrdiff_t>(sizeof(ImportLimits));
    if (message.size() <= sizeof(ImportLimits)) throw RefusedError("broken request");
    WorkerRequest request;
    std::memcpy(&request.limits, message.data(), sizeof(ImportLimits));
    request.triangulate = message[sizeof(ImportLimits)] != 0;
    request.file.assign(message.begin() + begin + 1, message.end());
    return request;
}

}  // namespace vantorix::apps::import
