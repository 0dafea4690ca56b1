#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::utils {
class Matrix;
}

namespace vantorix::core::event {

class Payload;

VANTORIX_CORE_EXPORT void intrusive_ptr_add_ref(const Payload* payload);
VANTORIX_CORE_EXPORT void intrusive_ptr_release(const Payload* payload);

/// The payload of an event: one text whose values are joined with ",".
///
/// Never changes. Copies share a long text and carry a short one. May be read and copied on any
/// thread.
class VANTORIX_CORE_EXPORT EventData {
public:
    EventData(std::string payload);

    /// The payload @p first + "," + @p second.
    static EventData joined(std::string_view first, std::string_view second);

    /// The payload @p id + "," + Matrix::toEventDataString() of @p matrix. The matrix is copied
    /// now; the text is made when it is first read, on the reading thread. Reading the first value
    /// only does not make it.
    static EventData withMatrix(std::string id, const utils::Matrix& matrix);

    /// The same from 16 floats, column by column; a null pointer counts as the identity.
    static EventData withMatrix(std::string id, const float* elements);

    /// The whole payload.
    std::string toString() const;

    /// The value at position @p index, counted from 1: the text between two commas. Empty values
    /// keep their place; outside the payload the answer is empty.
    std::string getArg(int index) const;

private:
    explicit EventData(const Payload* payload);
    char* shortBytes(std::size_t size);
    std::string_view text() const;

    boost::intrusive_ptr<const Payload> payload_;  // Empty when the text is a short one.
    // Here, since counting uses costs more; in words, since they are faster to copy. The last byte
    // is the size.
    std::array<std::uint64_t, 3> short_;
};

}  // namespace vantorix::core::event
