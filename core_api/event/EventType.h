#pragma once

#include <atomic>
#include <cstddef>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "core_api/CoreExport.h"

namespace vantorix::core::event {

/// The name of an event. Names are compared byte-wise.
///
/// Copies share the name: keep a type that is sent often as a constant and copying it allocates
/// nothing. May be read and copied on any thread. The first few thousand different names of a
/// process stay in memory.
class VANTORIX_CORE_EXPORT EventType {
public:
    EventType(std::string name);

    /// Valid as long as a copy of this type lives.
    const std::string& getName() const;

    /// Equal for equal names; not stable between runs.
    std::size_t getHash() const { return name_ ? name_->hash : 0; }

    friend bool operator==(const EventType& left, const EventType& right) {
        return left.name_ == right.name_ ||
               (left.getHash() == right.getHash() && left.getName() == right.getName());
    }
    friend bool operator!=(const EventType& left, const EventType& right) {
        return !(left == right);
    }
    friend bool operator<(const EventType& left, const EventType& right) {
        return left.getName() < right.getName();
    }

private:
    friend class EventManager;
    class Names;

    struct Name {
        Name(std::string itsText, std::size_t itsHash, bool isPermanent);

        const std::string text;
        const std::size_t hash;
        const bool permanent;  // Not counted, since counting is most of what a copy costs.
        mutable std::atomic<std::size_t> uses{0};
    };

    friend void intrusive_ptr_add_ref(const Name* name) {
        if (!name->permanent) name->uses.fetch_add(1, std::memory_order_relaxed);
    }
    friend void intrusive_ptr_release(const Name* name) {
        if (!name->permanent && name->uses.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete name;
        }
    }

    EventType(std::string name, std::size_t hash);

    static std::size_t hashOf(const std::string& name);

    boost::intrusive_ptr<const Name> name_;  // Empty after a move.
};

}  // namespace vantorix::core::event
