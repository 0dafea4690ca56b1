#include "core_api/event/EventType.h"

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
    std::uint64_t hash = name.size();
    std::size_t begin = 0;
    for (; begin + sizeof(hash) <= name.size(); begin += sizeof(hash)) {
        std::uint64_t word;
        std::memcpy(&word, name.data() + begin, sizeof(word));
        hash = mixed(hash ^ word);
    }
    std::uint64_t rest = 0;
    for (; begin < name.size(); ++begin) rest = rest << 8 | static_cast<unsigned char>(name[begin]);
    return static_cast<std::size_t>(mixed(hash ^ rest));
}

}  // namespace vantorix::core::event
