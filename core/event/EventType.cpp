#include "core_api/event/EventType.h"

#include <utility>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "core/event/EventTypeHash.h"
#include "core/event/GrowingTable.h"
#include "core/utils/TextHash.h"

namespace vantorix::core::event {
/// The names of the process: one object for each of the first names, found without a lock.
class EventType::Names {
public:
    static Names& instance() {
        static auto* const names = new Names;  // Never destroyed: statics may hold event types.
        return *names;
    }

    const Name* get(std::string text, std::size_t hash) {
        const auto isText = [&text](const Name& name) { return name.text == text; };
        if (const auto* known = table_.find(hash, isText)) return known;
        const boost::lock_guard<boost::mutex> lock(mutex_);
        if (const auto* known = table_.find(hash, isText)) return known;
        if (count_ == mostPermanent) return new Name(std::move(text), hash, false);
        ++count_;
        return &table_.insert(hash, std::move(text), hash, true);
    }

private:
    // A limit, since a program may make up names for as long as it runs.
    static constexpr unsigned int mostPermanent = 4096;

    boost::mutex mutex_;
    GrowingTable<const Name> table_;
    unsigned int count_ = 0;
};

EventType::Name::Name(std::string itsText, std::size_t itsHash, bool isPermanent)
    : text(std::move(itsText)), hash(itsHash), permanent(isPermanent) {}

EventType::EventType(std::string name) {
    const auto hash = hashOf(name);
    name_ = Names::instance().get(std::move(name), hash);
}

EventType::EventType(std::string name, std::size_t hash)
    : name_(Names::instance().get(std::move(name), hash)) {}

const std::string& EventType::getName() const {
    static const std::string none;
    return name_ ? name_->text : none;
}

std::size_t EventType::hashOf(const std::string& name) {
    // The slot lowest, where it can be told without the rest.
    return static_cast<std::size_t>(utils::textHash(name.data(), name.size())) * typeSlots +
           typeSlot(name);
}

}  // namespace vantorix::core::event
