#include "apps/import/worker/WorkerChannel.h"

#include <array>
#include <cerrno>
#include <sys/socket.h>

#include "apps/import/WorkerMessages.h"

namespace vantorix::apps::import {

std::vector<std::uint8_t> receiveMessage() {
    std::vector<std::uint8_t> message;
    std::array<std::uint8_t, 4096> part{};
    for (;;) {
        const ssize_t got = ::recv(workerSocket, part.data(), part.size(), 0);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return message;
        message.insert(message.end(), part.begin(), part.begin() + got);
    }
}

bool sendMessage(const std::vector<std::uint8_t>& message) {
    for (std::size_t sent = 0; sent < message.size();) {
        const ssize_t size =
            ::send(workerSocket, message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) return false;
        sent += static_cast<std::size_t>(size);
    }
    return true;
}

}  // namespace vantorix::apps::import
