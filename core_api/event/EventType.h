#pragma once

#include <cstddef>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::event {

/// The name of an event. Names are compared byte-wise.
///
/// Copies share the name: keep a type that is sent often as a constant and copying it allocates
/// nothing. May be read and copied on any thread.
class VANTORIX_CORE_EXPORT EventType {
public:
    EventType(std::string name);

    /// Valid as long as a copy of this type lives.
    const std::string& getName() const;

    /// Equal for equal names; not stable between runs.
    std::size_t getHash() const { return hash_; }

    static std::size_t hashOf(const std::string& name);

    friend bool operator==(const EventType& left, const EventType& right) {
        return left.name_ == right.name_ ||
               (left.hash_ == right.hash_ && left.getName() == right.getName());
    }
    friend bool operator!=(const EventType& left, const EventType& right) {
        return !(left == right);
    }
    friend bool operator<(const EventType& left, const EventType& right) {
        return left.getName() < right.getName();
    }

private:
    struct SharedName : boost::intrusive_ref_counter<SharedName> {
        explicit SharedName(std::string name) : text(std::move(name)) {}
        const std::string text;
    };

    boost::intrusive_ptr<const SharedName> name_;  // Empty after a move.
    std::size_t hash_;
};

}  // namespace vantorix::core::event
