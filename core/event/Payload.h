#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "core_api/event/EventData.h"

namespace vantorix::core::event {

/// A text that event data share.
class Payload {
public:
    explicit Payload(std::string&& text) : text_(std::move(text)) {}
    Payload(const Payload&) = delete;
    Payload& operator=(const Payload&) = delete;
    virtual ~Payload() = default;

    virtual std::string_view text() const { return text_; }

    /// A beginning of the text that ends with the text or before a comma; costs nothing.
    const std::string& beginning() const { return text_; }

private:
    friend void intrusive_ptr_add_ref(const Payload* payload);
    friend void intrusive_ptr_release(const Payload* payload);

    const std::string text_;
    mutable std::atomic<std::size_t> uses_{1};  // Whoever makes a payload owns it.
};

/// An id and a matrix that become a text on demand. Readers may race: the first finished text is
/// kept.
class MatrixPayload : public Payload {
public:
    MatrixPayload(std::string&& id, const float* elements);
    ~MatrixPayload() override;

    std::string_view text() const override;

private:
    std::string_view render() const;

    std::array<float, 16> matrix_;
    mutable std::atomic<std::size_t> renderedSize_{0};  // Every reader finds the same one.
    mutable std::atomic<const char*> rendered_{nullptr};
};

}  // namespace vantorix::core::event
