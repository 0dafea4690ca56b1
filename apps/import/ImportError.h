#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vantorix::apps::import {

/// A limit that was met. The numbers are in @c unit.
struct LimitMet {
    std::string name;      ///< What is limited: "nodes", "memory", "processor time", ...
    std::string unit;      ///< "MiB", "s", "bytes", or empty for plain counts.
    double met = 0.0;      ///< For memory, which cannot be measured beyond its limit: the limit.
    double allowed = 0.0;  ///< 0 for memory of this program, which has no limit of its own.
};

/// A model that cannot be read. The text is one line and does not repeat the file's name.
class RefusedError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A model that costs more than its limits allow.
class LimitError : public std::runtime_error {
public:
    LimitError(const LimitMet& limit, const std::string& text);

    const LimitMet& limit() const { return limit_; }

private:
    LimitMet limit_;
};

/// @throws LimitError when @p count is above @p allowed; @p name is a plural: "nodes".
void requireWithin(const std::string& name, std::uint64_t count, std::uint64_t allowed);

/// @p text on one line of at most 300 bytes: every control character becomes a blank.
std::string oneLine(const std::string& text);

}  // namespace vantorix::apps::import
