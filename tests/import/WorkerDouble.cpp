// Answers a request as its file's name says; the tests look at what the program makes of it.

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <map>
#include <new>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "apps/import/ModelDocument.h"
#include "apps/import/WorkerMessages.h"
#include "tests/import/SampleDocument.h"

namespace {

using namespace vantorix::apps::import;

using Bytes = std::vector<std::uint8_t>;

void send(const Bytes& bytes) {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t size =
            ::send(workerSocket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (size <= 0) ::_exit(9);
        sent += static_cast<std::size_t>(size);
    }
}

Bytes soundAnswer() {
    WorkerAnswer answer;
    answer.status = WorkerAnswer::DONE;
    answer.document.nodes.resize(1);
    return writeAnswer(answer);
}

int openDescriptors() {
    int count = 0;
    for (int number = 0; number < 1024; ++number) count += ::fcntl(number, F_GETFD) >= 0;
    return count;
}

void useMemory() {
    std::vector<std::vector<char>> blocks;
    try {
        for (;;) blocks.emplace_back(std::size_t{1} << 24, 'x');
    } catch (const std::bad_alloc&) {
        ::_exit(workerOutOfMemory);
    }
}

void spin() {
    for (volatile unsigned int i = 0;; i = i + 1) {
    }
}

void answerForever() {
    for (;;) send(Bytes(1 << 16, 0x81));
}

void answerAndStay() {
    send(soundAnswer());
    ::shutdown(workerSocket, SHUT_RDWR);
    ::close(workerSocket);
    ::pause();
}

void printMuch() {
    for (int i = 0; i < 100000; ++i) {
        std::puts("a line that nobody should see");
        std::fputs("another one\n", stderr);
    }
    send(soundAnswer());
}

void writeFile() {
    const int file = ::open("/tmp", O_TMPFILE | O_WRONLY, 0600);
    ::signal(SIGXFSZ, SIG_IGN);
    ::_exit(file >= 0 && ::write(file, "x", 1) < 0 ? 11 : 12);
}

void sendCut() {
    auto bytes = soundAnswer();
    bytes.erase(bytes.begin() + 3);
    send(bytes);
}

/// Lists within lists, a million deep.
void sendNested() {
    Bytes bytes(1000000, 0x81);
    bytes.push_back(0x00);
    std::uint64_t size = bytes.size();
    for (int i = 0; i < 8; ++i, size >>= 8) bytes.push_back(static_cast<std::uint8_t>(size));
    send(bytes);
}

const std::map<std::string, std::function<void()>> behaviours = {
    {"sound", [] { send(soundAnswer()); }},
    {"sample.obj", [] { send(writeAnswer(sampleAnswer())); }},
    {"silent", [] {}},
    {"crash", [] { ::raise(SIGSEGV); }},
    {"abort", [] { ::raise(SIGABRT); }},
    {"crash_after_answer", [] { send(soundAnswer()), ::raise(SIGBUS); }},
    {"exit", [] { ::_exit(7); }},
    {"hang", [] { ::pause(); }},
    {"hang_after_answer", answerAndStay},
    {"spin", spin},
    {"memory", useMemory},
    {"garbage", [] { send(Bytes(1000, 0x5a)); }},
    {"cut", sendCut},
    {"nested", sendNested},
    {"endless", answerForever},
    {"prints", printMuch},
    {"writes", writeFile},
    {"descriptors", [] { ::_exit(openDescriptors()); }},
};

}  // namespace

int main() {
    Bytes request(65536);
    std::size_t size = 0;
    for (ssize_t got = 1; got > 0; size += static_cast<std::size_t>(got)) {
        got = ::recv(workerSocket, request.data() + size, request.size() - size, 0);
        if (got < 0) return 1;
    }
    request.resize(size);
    ::signal(SIGSEGV, SIG_DFL);  // Sanitizers catch it and would report an exit code instead.
    ::signal(SIGABRT, SIG_DFL);
    ::signal(SIGBUS, SIG_DFL);
    behaviours.at(std::filesystem::path(readRequest(request).file).filename().string())();
    ::_exit(0);
}
