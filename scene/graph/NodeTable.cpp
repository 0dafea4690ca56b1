#include "scene/graph/NodeTable.h"

#include "core/utils/TextHash.h"

namespace vantorix::scene {

NodeTable::Answer NodeTable::find(const std::string& text, Node*& node) const {
    if (!shared_.empty()) {
        const auto found = shared_.find(text);
        if (found != shared_.end()) {
            node = found->second.first;
            return node ? ONE : SEVERAL;
        }
    }
    if (entries_.empty()) return NONE;
    const auto position = locate(hashOf(text), text);
    if (tags_[position] == 0) return NONE;
    node = entries_[position].node;
    return ONE;
}

void NodeTable::fetchEntry(const std::string& text) const {
    if (!entries_.empty()) __builtin_prefetch(&entries_[hashOf(text) & (entries_.size() - 1)]);
}

void NodeTable::fetchNode(const std::string& text) const {
    if (entries_.empty()) return;
    const auto hash = hashOf(text);
    const auto& entry = entries_[hash & (entries_.size() - 1)];
    if (!entry.node || entry.hash != hash) return;
    const auto* const first = reinterpret_cast<const char*>(&textOf_(*entry.node));
    __builtin_prefetch(first);
    __builtin_prefetch(first + sizeof(std::string) - 1);
    __builtin_prefetch(reinterpret_cast<const char*>(entry.node) - 1);  // Its reference counts.
}

void NodeTable::rememberFirst(const std::string& text, Node* node) {
    const auto found = shared_.find(text);
    if (found != shared_.end()) found->second.first = node;
}

void NodeTable::insert(Node* node) {
    const auto& text = textOf_(*node);
    if (!shared_.empty()) {
        const auto found = shared_.find(text);
        if (found != shared_.end()) {
            ++found->second.count;
            found->second.first = nullptr;  // The new one may stand before it.
            return;
        }
    }
    if (4 * (used_ + 1) > 3 * entries_.size()) grow();
    const auto hash = hashOf(text);
    const auto position = locate(hash, text);
    if (tags_[position] == 0) {
        write(position, Entry{hash, node});
        ++used_;
        return;
    }
    shared_.emplace(text, Shared{2, nullptr});
    eraseEntry(position);
}

void NodeTable::erase(Node* node) {
    const auto& text = textOf_(*node);
    const auto found = shared_.empty() ? shared_.end() : shared_.find(text);
    if (found == shared_.end()) {
        if (!entries_.empty()) eraseEntry(locate(hashOf(text), text));
        return;
    }
    if (--found->second.count == 0) {
        shared_.erase(found);
    } else if (found->second.first == node) {
        found->second.first = nullptr;
    }
}

void NodeTable::clear() {
    entries_.clear();
    entries_.shrink_to_fit();
    tags_.clear();
    tags_.shrink_to_fit();
    used_ = 0;
    shared_.clear();
}

std::uint32_t NodeTable::hashOf(const std::string& text) {
    return static_cast<std::uint32_t>(core::utils::textHash(text.data(), text.size()));
}

std::size_t NodeTable::locate(std::uint32_t hash, const std::string& text) const {
    const auto mask = entries_.size() - 1;
    const auto tag = tagOf(hash);
    auto position = hash & mask;
    for (; tags_[position] != 0; position = (position + 1) & mask) {
        if (tags_[position] != tag || entries_[position].hash != hash) continue;
        if (textOf_(*entries_[position].node) == text) break;
    }
    return position;
}

void NodeTable::write(std::size_t position, const Entry& entry) {
    entries_[position] = entry;
    tags_[position] = entry.node ? tagOf(entry.hash) : std::uint8_t(0);
}

void NodeTable::grow() {
    std::vector<Entry> old(entries_.empty() ? 16 : 2 * entries_.size());
    old.swap(entries_);
    tags_.assign(entries_.size(), 0);
    for (const auto& entry : old) {
        if (entry.node) place(entry);
    }
}

void NodeTable::place(Entry entry) {
    const auto mask = entries_.size() - 1;
    auto position = entry.hash & mask;
    while (tags_[position] != 0) position = (position + 1) & mask;
    write(position, entry);
}

// Linear probing without tombstones: entries behind the gap move up when their probe passed it
// (Knuth, The Art of Computer Programming, vol. 3, section 6.4, algorithm R).
void NodeTable::eraseEntry(std::size_t position) {
    if (!entries_[position].node) return;
    const auto mask = entries_.size() - 1;
    auto gap = position;
    for (auto next = (gap + 1) & mask; entries_[next].node; next = (next + 1) & mask) {
        const auto home = entries_[next].hash & mask;
        if (((next - home) & mask) >= ((next - gap) & mask)) {
            write(gap, entries_[next]);
            gap = next;
        }
    }
    write(gap, Entry{});
    --used_;
}

}  // namespace vantorix::scene
