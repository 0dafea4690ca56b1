#include "core_api/event/EventType.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

#include "core/event/GrowingTable.h"

namespace vantorix::core::event {
namespace {

/// One step of a multiplicative hash; the shift brings the upper bits down.
std::uint64_t mixed(std::uint64_t value) {
    value *= 0x9E3779B97F4A7C15u;  // The golden ratio, Knuth, The Art of Computer Programming, 6.4.
    return value ^ value >> 32;
}

std::uint64_t word(const char* bytes, std::size_t size) {
    std::uint64_t result = 0;
    std::memcpy(&result, bytes, size);
    return result;
}

}  // namespace

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
    const char* const end = name.data() + name.size();
    std::uint64_t hash = name.size();
    for (const char* at = name.data(); end - at > 8; at += 8) hash = mixed(hash ^ word(at, 8));
    // The last eight bytes, also where they overlap with the ones before.
    const auto rest = std::min<std::size_t>(name.size(), 8);
    return static_cast<std::size_t>(mixed(hash ^ word(end - rest, rest)));
}

}  // namespace vantorix::core::event
