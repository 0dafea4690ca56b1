#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "scene/geometry/FloatArray.h"

namespace vantorix::scene {

/// Finds the lowest tuple of a float array that has given bytes.
///
/// An open-addressing table of tuple numbers with 32 bits of each tuple's hash beside them.
/// An entry is only a hint: whatever it names is compared with the floats that stand there, and
/// entries at or past the indexed tuples are dead, so that an edit of the array costs nothing here
/// until the next search reads the changed end of it again.
class TupleIndex {
public:
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t mostTuples = std::numeric_limits<int>::max();

    /// Whether a search may trust what an earlier one has read: no reference for writing is valid.
    static bool isUsableOn(const FloatArray& values) { return !values.isExposed(); }

    /// Whether the tuples that have been read make up the whole array, with no floats left over.
    bool isCompleteOn(const FloatArray& values, std::size_t stride) const {
        return stride == stride_ && indexed_ * stride == values.size();
    }

    /// Whether they are known to make up the whole array, as it is now, with no two of them equal.
    bool isDistinctOn(const FloatArray& values, std::size_t stride) const {
        return isDistinct_ && isUpToDate(values, stride) && isCompleteOn(values, stride);
    }

    /// Of a tuple of @p stride floats, for find().
    static std::uint32_t hashOf(const float* value, std::size_t stride);

    /// The lowest tuple with the bytes of @p value, or none; remembers its place for
    /// noteAppended().
    std::size_t find(FloatArray& values, std::size_t stride, const float* value,
                     std::uint32_t hash);

    /// To be called when the value that the last find() missed has been appended.
    void noteAppended(FloatArray& values);

    /// For each of @p count tuples writes the lowest equal one's number to @p indices, after it has
    /// been appended where there was none. The array must end with a whole tuple and stay below
    /// mostTuples.
    /// @param keys  null, or a small number for each tuple: those with one number are often equal,
    ///              within this call or one before, and a tuple that is equal needs no search.
    void insertAll(FloatArray& values, std::size_t stride, const float* tuples, std::size_t count,
                   int* indices, const int* keys);

    /// Of a few tuples.
    static constexpr std::size_t mostOfFew = 16;

    /// The same for at most mostOfFew tuples, which lie behind @p rows at @p place, where it needs
    /// no memory and the array has been read as it is.
    /// @return how many have been appended; nothing, with nothing changed, otherwise.
    std::optional<unsigned int> insertFew(FloatArray& values, std::size_t stride,
                                          const float* const* rows, std::size_t place,
                                          std::size_t count, int* indices, const int* keys);

    /// Asks for the memory that insertFew() will search with these keys.
    void fetchFew(std::size_t stride, const float* const* rows, std::size_t place,
                  std::size_t count, const int* keys) const;

private:
    struct Entry {
        std::uint32_t hash;
        std::uint32_t tuple;
    };
    static constexpr std::uint32_t unused = std::numeric_limits<std::uint32_t>::max();
    // When a value's turn comes, the memory to be searched was asked for some values before: more
    // of them where most need no search.
    static constexpr std::size_t ahead = 16;
    static constexpr std::size_t aheadOfGuesses = 64;

    bool isUpToDate(const FloatArray& values, std::size_t stride) const;
    void readChanges(FloatArray& values, std::size_t stride);
    void markRead(FloatArray& values);
    std::size_t search(const FloatArray& values, const float* value);
    // Inlined, like insertOne(): they are the inner loop of everything that comes in.
    template <std::size_t FixedStride>
    [[gnu::always_inline]] std::size_t searchFor(const float* floats, const float* value);
    template <std::size_t FixedStride>
    [[gnu::always_inline]] void append(FloatArray& values, const float* value);
    template <std::size_t FixedStride>
    void insertEach(FloatArray& values, const float* tuples, std::size_t count, int* indices,
                    const int* keys);
    template <std::size_t FixedStride>
    void insertFound(FloatArray& values, const float* tuples, std::size_t count, int* indices);
    template <std::size_t FixedStride>
    void insertGuessed(FloatArray& values, const float* tuples, std::size_t count, int* indices,
                       const int* keys);
    template <std::size_t FixedStride>
    void insertFewOf(FloatArray& values, const float* const* rows, std::size_t place,
                     std::size_t count, int* indices, const int* keys);
    template <std::size_t FixedStride>
    [[gnu::always_inline]] int insertByGuess(FloatArray& values, const float* value, int key);
    template <std::size_t FixedStride>
    [[gnu::always_inline]] int insertOne(FloatArray& values, const float* value,
                                         std::uint32_t hash);
    std::uint32_t guessFor(int key) const;
    void noteGuess(int key, int tuple);
    bool makeRoomForGuess(std::size_t place);
    void fetchEntry(std::uint32_t hash) const;
    void enter(std::size_t tuple);
    bool hasRoomFor(std::size_t additional) const;
    void grow(std::size_t additional);
    void reinsert(Entry entry);
    bool isDead(const Entry& entry) const { return entry.tuple >= indexed_; }

    std::vector<Entry> entries_;  // A power of two of them.
    std::size_t used_ = 0;        // Entries that are not unused, dead ones among them.
    std::size_t indexed_ = 0;     // Tuples that are found through the entries.
    std::size_t stride_ = 0;
    std::size_t seenSize_ = 0;            // Floats of the array when it was last read.
    bool isDistinct_ = true;              // No two of the indexed tuples are equal.
    std::vector<std::uint32_t> guesses_;  // By key, a tuple to look at first.

    // Where the last search ended: its hash, and the entry for a value that was not found.
    std::uint32_t missedHash_ = 0;
    std::size_t missedPlace_ = 0;
};

}  // namespace vantorix::scene
