#include "scene/graph/NodeTable.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "core/utils/TextHash.h"

namespace vantorix::scene {
namespace {

constexpr std::uint64_t everyByte = 0x0101010101010101u;

/// The highest bit of each byte that is 0; bytes above the lowest of these may be marked, too
/// (Warren, Hacker's Delight, section 6-1).
std::uint64_t zeroBytes(std::uint64_t bytes) {
    return (bytes - everyByte) & ~bytes & 0x80 * everyByte;
}

/// Of the lowest byte marked.
std::size_t firstByte(std::uint64_t marks) {
    return static_cast<std::size_t>(__builtin_ctzll(marks)) / 8;
}

}  // namespace

const std::string& NodeTable::textOf(const Node& node) const { return node.*text_; }

// Of its text and of its reference counts, which boost::make_shared puts before it.
void NodeTable::fetchAll(const Node& node) const {
    constexpr std::size_t countsBefore = 40;
    const auto* const text = reinterpret_cast<const char*>(&textOf(node));
    __builtin_prefetch(text);
    __builtin_prefetch(text + sizeof(std::string) - 1);
    __builtin_prefetch(reinterpret_cast<const char*>(&node) - countsBefore);
}

inline bool NodeTable::carries(const Node& node, const std::string& text) const {
    fetchAll(node);
    const auto& known = textOf(node);
    return known.size() == text.size() &&
           core::utils::equalTexts(known.data(), text.data(), text.size());
}

// Most stand where they belong: then their node need not wait for a look at the group.
inline std::size_t NodeTable::locate(std::uint32_t hash, const std::string& text) const {
    const auto home = hash & (size_ - 1);
    const auto& entry = entries_[home];
    __builtin_prefetch(&entry);  // Together with its tag.
    const bool isProbable = tags_[home] == tagOf(hash) && entry.hash == hash;
    return isProbable && carries(*entry.node, text) ? home : locateFarther(hash, text);
}

std::size_t NodeTable::locateFarther(std::uint32_t hash, const std::string& text) const {
    return probe(hash, [&](const Entry& entry) { return carries(*entry.node, text); });
}

NodeTable::Found NodeTable::find(const std::string& text) const {
    if (!shared_.empty()) {
        const auto found = findShared(text);
        if (found.answer != NONE) return found;
    }
    if (size_ == 0) return Found{NONE, nullptr};
    const auto position = locate(hashOf(text), text);
    if (tags_[position] == 0) return Found{NONE, nullptr};
    return Found{ONE, entries_[position].node};
}

bool NodeTable::isCarried(const std::string& text) const {
    const auto hash = hashOf(text);
    for (const auto& waiting : queue_) {
        if (waiting.node && waiting.hash == hash && carries(*waiting.node, text)) return true;
    }
    return find(text).answer != NONE;
}

NodeTable::Found NodeTable::findShared(const std::string& text) const {
    const auto found = shared_.find(text);
    if (found == shared_.end()) return Found{NONE, nullptr};
    auto* const first = found->second.first;
    return Found{first ? ONE : SEVERAL, first};
}

void NodeTable::fetchEntry(const std::string& text) const {
    if (size_ > 0) fetchHome(hashOf(text));
}

void NodeTable::fetchHome(std::uint32_t hash) const {
    const auto home = hash & (size_ - 1);
    __builtin_prefetch(&tags_[home]);
    __builtin_prefetch(&entries_[home]);
}

void NodeTable::fetchNode(const std::string& text) const {
    if (size_ == 0) return;
    const auto hash = hashOf(text);
    const auto position = probe(hash, [](const Entry&) { return true; });
    if (tags_[position] != 0) fetchAll(*entries_[position].node);
}

bool NodeTable::isShared(const std::string& text) const { return shared_.count(text) > 0; }

void NodeTable::rememberFirst(const std::string& text, Node* node) {
    const auto found = shared_.find(text);
    if (found != shared_.end()) found->second.first = node;
}

void NodeTable::insert(Node* node) {
    reserve(1);
    auto& waiting = queue_[turn_];
    turn_ = (turn_ + 1) % longestQueue;
    if (waiting.node) settle(waiting);
    waiting = Entry{hashOf(textOf(*node)), node};
    ++queued_;
    fetchHome(waiting.hash);
}

void NodeTable::settle() {
    for (auto& waiting : queue_) {
        if (waiting.node) settle(waiting);
    }
}

void NodeTable::settle(Entry& waiting) {
    const auto entry = std::exchange(waiting, Entry{});
    --queued_;
    const auto& text = textOf(*entry.node);
    if (!shared_.empty()) {
        const auto found = shared_.find(text);
        if (found != shared_.end()) {
            ++found->second.count;
            found->second.first = nullptr;  // The new one may stand before it.
            return;
        }
    }
    const auto position = locate(entry.hash, text);
    if (tags_[position] == 0) {
        write(position, entry);
        ++used_;
        return;
    }
    shared_.emplace(text, Shared{2, nullptr});
    eraseEntry(position);
}

void NodeTable::erase(Node* node) {
    if (!isSettled() && leaveQueue(node)) return;
    const auto& text = textOf(*node);
    const auto found = shared_.empty() ? shared_.end() : shared_.find(text);
    if (found == shared_.end()) {
        if (size_ > 0) eraseEntry(locate(hashOf(text), text));
        return;
    }
    if (--found->second.count == 0) {
        shared_.erase(found);
    } else if (found->second.first == node) {
        found->second.first = nullptr;
    }
}

bool NodeTable::leaveQueue(const Node* node) {
    const auto waiting = std::find_if(queue_.begin(), queue_.end(),
                                      [&](const Entry& entry) { return entry.node == node; });
    if (waiting == queue_.end()) return false;
    *waiting = Entry{};
    --queued_;
    return true;
}

void NodeTable::clear() {
    entries_.reset();
    size_ = 0;
    tags_.clear();
    tags_.shrink_to_fit();
    used_ = 0;
    shared_.clear();
    queue_ = {};
    queued_ = 0;
}

std::uint32_t NodeTable::hashOf(const std::string& text) {
    return static_cast<std::uint32_t>(core::utils::textHash(text.data(), text.size()));
}

template <class IsWanted>
std::size_t NodeTable::probe(std::uint32_t hash, const IsWanted& isWanted) const {
    const auto mask = size_ - 1;
    const auto wanted = tagOf(hash) * everyByte;
    for (std::size_t position = hash & mask;; position = (position + groupSize) & mask) {
        const auto group = groupAt(position);
        const auto free = zeroBytes(group);
        // Those before the first free place.
        auto candidates = zeroBytes(group ^ wanted) & (free - 1) & ~free;
        for (; candidates != 0; candidates &= candidates - 1) {
            const auto place = (position + firstByte(candidates)) & mask;
            if (entries_[place].hash == hash && isWanted(entries_[place])) return place;
        }
        if (free != 0) return (position + firstByte(free)) & mask;
    }
}

NodeTable::Group NodeTable::groupAt(std::size_t position) const {
    Group group = 0;
    std::memcpy(&group, tags_.data() + position, sizeof(group));
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    group = __builtin_bswap64(group);
#endif
    return group;
}

void NodeTable::write(std::size_t position, const Entry& entry) {
    entries_[position] = entry;
    setTag(position, tagOf(entry.hash));
}

void NodeTable::setTag(std::size_t position, std::uint8_t tag) {
    tags_[position] = tag;
    if (position < groupSize) tags_[size_ + position] = tag;
}

void NodeTable::reserve(std::size_t count) {
    auto size = std::max<std::size_t>(size_, 16);
    while (!isRoomFor(used_ + queued_ + count, size)) size *= 2;
    if (size > size_) growTo(size);
}

void NodeTable::growTo(std::size_t size) {
    std::unique_ptr<Entry[]> old(new Entry[size]);
    std::vector<std::uint8_t> oldTags(size + groupSize);
    old.swap(entries_);
    oldTags.swap(tags_);
    std::swap(size, size_);
    for (std::size_t position = 0; position < size; ++position) {
        if (oldTags[position] != 0) place(old[position]);
    }
}

void NodeTable::place(const Entry& entry) {
    write(probe(entry.hash, [](const Entry&) { return false; }), entry);
}

// Linear probing without tombstones: entries behind the gap move up when their probe passed it
// (Knuth, The Art of Computer Programming, vol. 3, section 6.4, algorithm R).
void NodeTable::eraseEntry(std::size_t position) {
    if (tags_[position] == 0) return;
    const auto mask = size_ - 1;
    auto gap = position;
    for (auto next = (gap + 1) & mask; tags_[next] != 0; next = (next + 1) & mask) {
        const auto home = entries_[next].hash & mask;
        if (((next - home) & mask) >= ((next - gap) & mask)) {
            write(gap, entries_[next]);
            gap = next;
        }
    }
    setTag(gap, 0);
    --used_;
}

}  // namespace vantorix::scene
