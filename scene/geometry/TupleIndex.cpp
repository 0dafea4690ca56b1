#include "scene/geometry/TupleIndex.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace vantorix::scene {
namespace {

__extension__ using Product = unsigned __int128;

std::uint64_t foldedProduct(std::uint64_t a, std::uint64_t b) {
    const auto product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t readPair(const float* floats) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, floats, 2 * sizeof(float));
    return bits;
}

/// The last @p count floats, at most two.
std::uint64_t readRest(const float* floats, std::size_t count) {
    std::uint64_t bits = 0;
    if (count == 2) return readPair(floats);
    if (count == 1) std::memcpy(&bits, floats, sizeof(float));
    return bits;
}

/// Multiplies and folds eight bytes at a time, after Wang Yi's wyhash.
inline std::uint32_t hashTuple(const float* floats, std::size_t count) {
    constexpr std::uint64_t first = 0xa0761d6478bd642fULL;
    constexpr std::uint64_t second = 0xe7037ed1a0b428dbULL;
    std::uint64_t hash = first;
    for (; count > 4; count -= 4, floats += 4) {
        hash = foldedProduct(readPair(floats) ^ hash, readPair(floats + 2) ^ second);
    }
    const std::size_t low = std::min<std::size_t>(count, 2);
    hash =
        foldedProduct(readRest(floats, low) ^ hash, readRest(floats + low, count - low) ^ second);
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

bool isEqual(const float* left, const float* right, std::size_t count) {
    if (count == 2) return readPair(left) == readPair(right);
    if (count == 3) {
        return readPair(left) == readPair(right) && readRest(left + 2, 1) == readRest(right + 2, 1);
    }
    return std::memcmp(left, right, count * sizeof(float)) == 0;
}

/// As many tuples as the array has memory for: they are likely to come.
std::size_t roomIn(const FloatArray& values, std::size_t stride) {
    return std::max<std::size_t>((values.capacity() - values.size()) / stride, 1);
}

std::size_t powerOfTwoFrom(std::size_t minimum) {
    std::size_t power = 64;
    while (power < minimum) power *= 2;
    return power;
}

}  // namespace

std::uint32_t TupleIndex::hashOf(const float* value, std::size_t stride) {
    return hashTuple(value, stride);
}

std::size_t TupleIndex::find(FloatArray& values, std::size_t stride, const float* value,
                             std::uint32_t hash) {
    if (!isUpToDate(values, stride)) readChanges(values, stride);
    if (!hasRoomFor(1)) grow(roomIn(values, stride));
    missedHash_ = hash;
    return search(values, value);
}

void TupleIndex::noteAppended(FloatArray& values) {
    // After an incomplete tuple the new floats have completed another one than that searched for.
    if ((indexed_ + 1) * stride_ != values.size()) return;
    enter(indexed_);
    markRead(values);
}

bool TupleIndex::isUpToDate(const FloatArray& values, std::size_t stride) const {
    return stride == stride_ && values.size() == seenSize_ && values.unchangedSize() == seenSize_;
}

void TupleIndex::readChanges(FloatArray& values, std::size_t stride) {
    if (stride != stride_) indexed_ = 0;
    stride_ = stride;
    indexed_ = std::min(indexed_, values.unchangedSize() / stride);
    if (indexed_ == 0) isDistinct_ = true;
    const std::size_t tuples = values.size() / stride;
    if (!hasRoomFor(tuples - indexed_)) grow(tuples - indexed_);
    const float* const floats = static_cast<const FloatArray&>(values).data();
    while (indexed_ < tuples) {
        const float* const value = floats + indexed_ * stride;
        missedHash_ = hashTuple(value, stride);
        // Of equal tuples only the lowest is entered.
        if (search(values, value) == none) {
            enter(indexed_);
        } else {
            ++indexed_;
            isDistinct_ = false;
        }
    }
    markRead(values);
}

void TupleIndex::markRead(FloatArray& values) {
    values.markSeen();
    seenSize_ = values.size();
}

template <std::size_t FixedStride>
inline std::size_t TupleIndex::searchFor(const float* floats, const float* value) {
    const Entry* const entries = entries_.data();
    const std::size_t mask = entries_.size() - 1;
    const std::size_t stride = FixedStride == 0 ? stride_ : FixedStride;
    const std::uint32_t hash = missedHash_;
    std::size_t dead = none;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        const Entry entry = entries[place];
        if (entry.hash == hash && !isDead(entry)) {
            if (isEqual(floats + entry.tuple * stride, value, stride)) return entry.tuple;
        } else if (isDead(entry)) {
            // The first dead entry is taken over: a value's lowest tuple is met first.
            if (dead == none) dead = place;
            if (entry.tuple == unused) break;
        }
    }
    missedPlace_ = dead;
    return none;
}

std::size_t TupleIndex::search(const FloatArray& values, const float* value) {
    return searchFor<0>(values.data(), value);
}

void TupleIndex::insertAll(FloatArray& values, std::size_t stride, const float* tuples,
                           std::size_t count, int* indices, const int* keys) {
    values.noteRevision();  // They are appended unheard, and memory may end between two.
    if (!isUpToDate(values, stride)) readChanges(values, stride);
    if (stride == 3) return insertEach<3>(values, tuples, count, indices, keys);
    if (stride == 2) return insertEach<2>(values, tuples, count, indices, keys);
    insertEach<0>(values, tuples, count, indices, keys);
}

template <std::size_t FixedStride>
void TupleIndex::insertEach(FloatArray& values, const float* tuples, std::size_t count,
                            int* indices, const int* keys) {
    // A guess is as good as a search where an equal tuple can only be the lowest one.
    if (keys && isDistinct_) {
        insertGuessed<FixedStride>(values, tuples, count, indices, keys);
    } else {
        insertFound<FixedStride>(values, tuples, count, indices);
    }
    markRead(values);
}

// Where there is room a few single floats come in faster than a range, and none can fail.
template <std::size_t FixedStride>
inline void TupleIndex::append(FloatArray& values, const float* value) {
    const std::size_t stride = FixedStride == 0 ? stride_ : FixedStride;
    if (values.capacity() - values.size() < stride) return values.append(value, stride);
    for (std::size_t i = 0; i < stride; ++i) values.items_.push_back(value[i]);
}

template <std::size_t FixedStride>
inline int TupleIndex::insertOne(FloatArray& values, const float* value, std::uint32_t hash) {
    if (!hasRoomFor(1)) grow(roomIn(values, stride_));
    missedHash_ = hash;
    std::size_t tuple =
        searchFor<FixedStride>(static_cast<const FloatArray&>(values).data(), value);
    if (tuple == none) {
        tuple = indexed_;
        append<FixedStride>(values, value);
        enter(tuple);
    }
    return static_cast<int>(tuple);
}

template <std::size_t FixedStride>
inline int TupleIndex::insertByGuess(FloatArray& values, const float* value, int key) {
    const std::size_t stride = FixedStride == 0 ? stride_ : FixedStride;
    const float* const floats = static_cast<const FloatArray&>(values).data();
    const std::size_t guess = guessFor(key);
    if (guess < indexed_ && isEqual(floats + guess * stride, value, stride)) {
        return static_cast<int>(guess);
    }
    const int tuple = insertOne<FixedStride>(values, value, hashTuple(value, stride));
    noteGuess(key, tuple);
    return tuple;
}

template <std::size_t FixedStride>
void TupleIndex::insertFound(FloatArray& values, const float* tuples, std::size_t count,
                             int* indices) {
    std::array<std::uint32_t, ahead> hashes{};
    const std::size_t stride = FixedStride == 0 ? stride_ : FixedStride;
    const auto prepare = [&](std::size_t i) {
        const auto hash = hashTuple(tuples + i * stride, stride);
        hashes[i % ahead] = hash;
        fetchEntry(hash);
    };
    for (std::size_t i = 0; i < std::min(ahead, count); ++i) prepare(i);
    for (std::size_t i = 0; i < count; ++i) {
        const auto hash = hashes[i % ahead];
        if (i + ahead < count) prepare(i + ahead);
        indices[i] = insertOne<FixedStride>(values, tuples + i * stride, hash);
    }
}

template <std::size_t FixedStride>
void TupleIndex::insertGuessed(FloatArray& values, const float* tuples, std::size_t count,
                               int* indices, const int* keys) {
    const std::size_t stride = FixedStride == 0 ? stride_ : FixedStride;
    const auto hashOfTuple = [&](std::size_t i) { return hashTuple(tuples + i * stride, stride); };
    const auto prepare = [&](std::size_t i) {
        // Hashed again when its turn comes: that is rare, and cheaper than to keep it.
        if (guessFor(keys[i]) == unused) fetchEntry(hashOfTuple(i));
    };
    for (std::size_t i = 0; i < std::min(aheadOfGuesses, count); ++i) prepare(i);
    for (std::size_t i = 0; i < count; ++i) {
        if (i + aheadOfGuesses < count) prepare(i + aheadOfGuesses);
        indices[i] = insertByGuess<FixedStride>(values, tuples + i * stride, keys[i]);
    }
}

std::optional<unsigned int> TupleIndex::insertFew(FloatArray& values, std::size_t stride,
                                                  const float* const* rows, std::size_t place,
                                                  std::size_t count, int* indices,
                                                  const int* keys) {
    const std::size_t size = values.size();
    const std::size_t before = indexed_;
    if (count > mostOfFew || !isUpToDate(values, stride) || indexed_ * stride != size ||
        indexed_ + count >= mostTuples || values.capacity() - size < count * stride ||
        !hasRoomFor(count)) {
        return std::nullopt;
    }
    if (stride == 3) {
        insertFewOf<3>(values, rows, place, count, indices, keys);
    } else if (stride == 2) {
        insertFewOf<2>(values, rows, place, count, indices, keys);
    } else {
        insertFewOf<0>(values, rows, place, count, indices, keys);
    }
    const std::size_t appended = indexed_ - before;
    if (appended > 0) {
        values.noteRevision();  // They were appended unheard.
        markRead(values);
    }
    return static_cast<unsigned int>(appended);
}

template <std::size_t FixedStride>
void TupleIndex::insertFewOf(FloatArray& values, const float* const* rows, std::size_t place,
                             std::size_t count, int* indices, const int* keys) {
    if (keys && isDistinct_) {
        for (std::size_t i = 0; i < count; ++i) {
            indices[i] = insertByGuess<FixedStride>(values, rows[i] + place, keys[i]);
        }
        return;
    }
    std::array<std::uint32_t, mostOfFew> hashes{};
    const std::size_t stride = FixedStride == 0 ? stride_ : FixedStride;
    for (std::size_t i = 0; i < count; ++i) {
        hashes[i] = hashTuple(rows[i] + place, stride);
        fetchEntry(hashes[i]);
    }
    for (std::size_t i = 0; i < count; ++i) {
        indices[i] = insertOne<FixedStride>(values, rows[i] + place, hashes[i]);
    }
}

void TupleIndex::fetchFew(std::size_t stride, const float* const* rows, std::size_t place,
                          std::size_t count, const int* keys) const {
    for (std::size_t i = 0; i < count; ++i) {
        if (guessFor(keys[i]) == unused) fetchEntry(hashTuple(rows[i] + place, stride));
    }
}

std::uint32_t TupleIndex::guessFor(int key) const {
    const auto place = static_cast<std::size_t>(key);
    return place < guesses_.size() ? guesses_[place] : unused;
}

void TupleIndex::noteGuess(int key, int tuple) {
    const auto place = static_cast<std::size_t>(key);
    if (place >= mostTuples) return;
    if (place >= guesses_.size() && !makeRoomForGuess(place)) return;
    guesses_[place] = static_cast<std::uint32_t>(tuple);
}

// Without memory for it there is one guess less.
bool TupleIndex::makeRoomForGuess(std::size_t place) {
    const auto size = std::max<std::size_t>({place + 1, 2 * guesses_.size(), 64});
    try {
        guesses_.resize(size, unused);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

void TupleIndex::fetchEntry(std::uint32_t hash) const {
    if (!entries_.empty()) __builtin_prefetch(&entries_[hash & (entries_.size() - 1)]);
}

void TupleIndex::enter(std::size_t tuple) {
    if (entries_[missedPlace_].tuple == unused) ++used_;
    entries_[missedPlace_] = {missedHash_, static_cast<std::uint32_t>(tuple)};
    indexed_ = tuple + 1;
}

bool TupleIndex::hasRoomFor(std::size_t additional) const {
    return (used_ + additional) * 2 <= entries_.size();
}

void TupleIndex::grow(std::size_t additional) {
    const auto isLive = [this](const Entry& entry) { return !isDead(entry); };
    const auto live = std::count_if(entries_.begin(), entries_.end(), isLive);
    const auto used = static_cast<std::size_t>(live);
    std::vector<Entry> old(powerOfTwoFrom((used + additional) * 2), Entry{0, unused});
    old.swap(entries_);
    used_ = used;
    for (const auto& entry : old) {
        if (isLive(entry)) reinsert(entry);
    }
}

void TupleIndex::reinsert(Entry entry) {
    const std::size_t mask = entries_.size() - 1;
    std::size_t place = entry.hash & mask;
    for (; entries_[place].tuple != unused; place = (place + 1) & mask) {
        // Entries of one hash stay in ascending order: a value's lowest tuple is met first.
        if (entries_[place].hash == entry.hash && entries_[place].tuple > entry.tuple) {
            std::swap(entries_[place], entry);
        }
    }
    entries_[place] = entry;
}

}  // namespace vantorix::scene
