#pragma once

#include <atomic>
#include <cstdint>

namespace vantorix::scene {

/// Counts edits of one kind in the whole process. Whoever remembers what it found compares counts
/// and searches again only after an edit, wherever that was made.
class EditCounter {
public:
    /// Never 0.
    std::uint64_t count() const { return count_.load(std::memory_order_relaxed); }
    void note() { count_.fetch_add(1, std::memory_order_relaxed); }

private:
    std::atomic<std::uint64_t> count_{1};
};

/// Changes of the SIDs of transformation elements and of the lists that nodes keep of them.
inline EditCounter elementEdits;

}  // namespace vantorix::scene
