#pragma once

#include <unistd.h>
#include <utility>

namespace vantorix::apps::import {

/// Owns one open file descriptor, or none (-1).
class FileDescriptor {
public:
    explicit FileDescriptor(int number = -1) : number_(number) {}
    ~FileDescriptor() { close(); }

    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    int number() const { return number_; }

    void close() {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

private:
    int number_;
};

}  // namespace vantorix::apps::import
