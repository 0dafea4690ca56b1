#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include <Eigen/Geometry>

namespace vantorix::fuzz {

/// Reads the input of a fuzzer as calls and their arguments. Past its end everything is zero, so
/// that every prefix of an input is an input. Most arguments take one byte: small changes of the
/// bytes are small changes of the calls.
class CallReader {
public:
    CallReader(const std::uint8_t* bytes, std::size_t size) : next_(bytes), end_(bytes + size) {}

    bool isAtEnd() const { return next_ == end_; }

    /// From 0 to @p limit - 1; @p limit is 1 to 256.
    unsigned int below(unsigned int limit) { return byte() % limit; }
    bool flag() { return below(2) != 0; }
    bool oneIn(unsigned int times) { return below(times) == 1; }

    std::uint32_t word() {
        std::uint32_t bits = 0;
        for (int i = 0; i < 4; ++i) bits = (bits << 8) | byte();
        return bits;
    }

    /// Mostly from 0 to 15, at times what programs do not expect.
    int integer() {
        static constexpr std::array<int, 8> limits{-1,
                                                   -2,
                                                   64,
                                                   1 << 16,
                                                   std::numeric_limits<int>::max(),
                                                   std::numeric_limits<int>::max() - 1,
                                                   std::numeric_limits<int>::min(),
                                                   std::numeric_limits<int>::min() + 1};
        const unsigned int kind = byte();
        return kind < 224 ? static_cast<int>(kind % 16) : limits[kind % limits.size()];
    }
    unsigned int index() { return static_cast<unsigned int>(integer()); }

    /// Mostly quarters from -24 to 24, at times limits, infinities, NaN or any bits.
    float real() {
        using Limits = std::numeric_limits<float>;
        static constexpr std::array<float, 12> limits{Limits::quiet_NaN(),
                                                      Limits::infinity(),
                                                      -Limits::infinity(),
                                                      Limits::max(),
                                                      Limits::lowest(),
                                                      Limits::min(),
                                                      Limits::denorm_min(),
                                                      -0.0f,
                                                      1.0f,
                                                      Limits::epsilon(),
                                                      1e10f,
                                                      -1e-10f};
        const unsigned int kind = byte();
        if (kind < 192) return (static_cast<float>(kind) - 96.0f) / 4.0f;
        if (kind == 255) return bitsAsReal(word());
        return limits[kind % limits.size()];
    }
    Eigen::Vector3f vector() {
        const float x = real(), y = real();
        return {x, y, real()};
    }
    Eigen::Matrix4f matrix() {
        if (flag()) return Eigen::Matrix4f::NullaryExpr([this] { return real(); });
        Eigen::Affine3f moved(Eigen::AngleAxisf(real(), Eigen::Vector3f::UnitZ()));
        moved.pretranslate(vector());
        return moved.matrix();
    }

    /// One of few, so that names meet; at times any text.
    std::string name() {
        static constexpr std::array<const char*, 12> names{
            "a", "b", "c", "d", "", "OID0", "OID1", "OID7", "a__renamed__", "a,b", "JOINT", "e"};
        const unsigned int kind = byte();
        return kind < 240 ? names[kind % names.size()] : text();
    }
    std::string text() {
        std::string made(below(12), ' ');
        for (char& letter : made) letter = static_cast<char>(byte());
        return made;
    }

    /// An element of a container that holds 1 to 256.
    template <typename Container>
    auto& of(Container& container) {
        return container[below(static_cast<unsigned int>(container.size()))];
    }

    /// Makes one of @p calls.
    template <typename... Calls>
    void makeOne(Calls&&... calls) {
        const unsigned int chosen = below(sizeof...(Calls));
        unsigned int number = 0;
        const auto makeIfChosen = [&](auto& call) {
            if (number++ == chosen) call();
        };
        (makeIfChosen(calls), ...);
    }

private:
    unsigned int byte() { return isAtEnd() ? 0u : *next_++; }

    static float bitsAsReal(std::uint32_t bits) {
        float number;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

}  // namespace vantorix::fuzz
