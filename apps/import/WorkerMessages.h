#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/import/ImportError.h"
#include "apps/import/ImportLimits.h"
#include "apps/import/ModelDocument.h"

// The two messages between the program and its worker. A request is plain bytes:
//     limits as they lie in memory | whether to triangulate, 1 byte | name of the file
// An answer is CBOR. It carries its large arrays as raw bytes in front of the CBOR part, which
// refers to them by position and length:
//     array bytes | CBOR | length of the CBOR part, 8 bytes in the machine's order
// Both ends are the same build on the same machine, so numbers keep their representation.

namespace vantorix::apps::import {

/// The worker finds its end of the socket under this number.
constexpr int workerSocket = 3;

/// A worker that has no memory left to say so ends with this exit code.
constexpr int workerOutOfMemory = 40;

struct WorkerRequest {
    std::string file;
    ImportLimits limits;
    bool triangulate = false;
};

struct WorkerAnswer {
    enum Status { DONE, REFUSED, LIMIT };

    Status status = REFUSED;
    std::string reason;  ///< For REFUSED and LIMIT.
    LimitMet limit;
    ModelDocument document;  ///< For DONE.
};

std::vector<std::uint8_t> writeRequest(const WorkerRequest& request);
std::vector<std::uint8_t> writeAnswer(const WorkerAnswer& answer);

/// @throws RefusedError for anything that writeRequest did not write.
WorkerRequest readRequest(const std::vector<std::uint8_t>& message);

/// Checks every length, count, reference and float of @p message.
/// @throws RefusedError for anything that writeAnswer would not write of a sound document.
/// @throws LimitError when the document holds more than @p limits allow.
WorkerAnswer readAnswer(const std::vector<std::uint8_t>& message, const ImportLimits& limits);

}  // namespace vantorix::apps::import
