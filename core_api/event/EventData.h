#pragma once

#include <atomic>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::utils {
class Matrix;
}

namespace vantorix::core::event {

/// The payload of an event: one text whose values are joined with ",".
///
/// Copies share the text, which never changes. May be read and copied on any thread.
class VANTORIX_CORE_EXPORT EventData {
public:
    EventData(std::string payload);

    /// The payload @p id + "," + Matrix::toEventDataString() of @p matrix. The matrix is copied
    /// now; the text is made when it is first read, on the reading thread.
    static EventData withMatrix(std::string id, const utils::Matrix& matrix);

    /// The same from 16 floats, column by column; a null pointer counts as the identity.
    static EventData withMatrix(std::string id, const float* elements);

    /// The whole payload; the reference is valid as long as a copy of this payload lives.
    const std::string& toString() const&;
    std::string toString() && { return static_cast<const EventData&>(*this).toString(); }

    /// The value at position @p index, counted from 1: the text between two commas. Empty values
    /// keep their place; outside the payload the answer is empty.
    std::string getArg(int index) const;

private:
    class Payload;
    class MatrixPayload;

    explicit EventData(Payload* payload);

    boost::intrusive_ptr<const Payload> payload_;  // Empty for the empty text.
};

class VANTORIX_CORE_EXPORT EventData::Payload : public boost::intrusive_ref_counter<Payload> {
public:
    explicit Payload(std::string text) : text_(std::move(text)) {}
    virtual ~Payload();
    virtual const std::string& text() const { return text_; }

private:
    const std::string text_;
};

}  // namespace vantorix::core::event
