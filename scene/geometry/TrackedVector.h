#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// Tells those who watch an array that one of all that are watched has changed.
VANTORIX_SCENE_EXPORT void noteWatchedEdit() noexcept;

/// An array of a stream, with the interface of std::vector and conversions in both directions.
///
/// It knows whether a reference, pointer or iterator that it handed out for writing can still be
/// valid, and how much of it is as an index over it has seen it. Read through a const reference
/// where nothing is to be written: tuples are found and animations played faster while no writing
/// reference can be valid. Such references end as those of std::vector do: with a reallocation,
/// clear() and assignment. For the same reason emplace_back returns nothing.
/// Threads: as std::vector; several may read at once, also by way of such references.
template <typename Item>
class TrackedVector {
protected:
    using Items = std::vector<Item>;

public:
    using value_type = typename Items::value_type;
    using allocator_type = typename Items::allocator_type;
    using size_type = typename Items::size_type;
    using difference_type = typename Items::difference_type;
    using reference = typename Items::reference;
    using const_reference = typename Items::const_reference;
    using pointer = typename Items::pointer;
    using const_pointer = typename Items::const_pointer;
    using iterator = typename Items::iterator;
    using const_iterator = typename Items::const_iterator;
    using reverse_iterator = typename Items::reverse_iterator;
    using const_reverse_iterator = typename Items::const_reverse_iterator;

    TrackedVector() = default;
    explicit TrackedVector(size_type count) : items_(count) {}
    TrackedVector(size_type count, const Item& value) : items_(count, value) {}
    TrackedVector(std::initializer_list<Item> values) : items_(values) {}
    /// Copies also from an expiring vector: references to its elements can outlive the move.
    TrackedVector(const Items& values) : items_(values) {}
    template <typename Input, typename = typename std::iterator_traits<Input>::iterator_category>
    TrackedVector(Input first, Input last) : items_(first, last) {}

    TrackedVector(const TrackedVector& other) : items_(other.items_) {}
    TrackedVector(TrackedVector&& other) noexcept
        : items_(std::move(other.items_)), exposed_(other.isExposed()) {
        other.forget();
    }
    ~TrackedVector() = default;

    TrackedVector& operator=(const TrackedVector& other) {
        *this = other.items_;
        return *this;
    }
    TrackedVector& operator=(TrackedVector&& other) noexcept {
        if (this == &other) return *this;
        items_ = std::move(other.items_);
        forget();
        exposed_ = other.isExposed();  // References into the other's storage lead here now.
        other.forget();
        return *this;
    }
    TrackedVector& operator=(const Items& values) {
        if (&values != &items_) replace([&] { items_ = values; });
        return *this;
    }
    TrackedVector& operator=(std::initializer_list<Item> values) {
        assign(values);
        return *this;
    }

    operator const Items&() const noexcept { return items_; }

    void assign(size_type count, const Item& value) {
        replace([&] { items_.assign(count, value); });
    }
    template <typename Input, typename = typename std::iterator_traits<Input>::iterator_category>
    void assign(Input first, Input last) {
        replace([&] { items_.assign(first, last); });
    }
    void assign(std::initializer_list<Item> values) {
        replace([&] { items_.assign(values); });
    }
    allocator_type get_allocator() const noexcept { return items_.get_allocator(); }

    /// @name Reading
    /// @{
    const_reference at(size_type index) const { return items_.at(index); }
    const_reference operator[](size_type index) const { return items_[index]; }
    const_reference front() const { return items_.front(); }
    const_reference back() const { return items_.back(); }
    const_pointer data() const noexcept { return items_.data(); }
    const_iterator begin() const noexcept { return items_.begin(); }
    const_iterator end() const noexcept { return items_.end(); }
    const_iterator cbegin() const noexcept { return items_.cbegin(); }
    const_iterator cend() const noexcept { return items_.cend(); }
    const_reverse_iterator rbegin() const noexcept { return items_.rbegin(); }
    const_reverse_iterator rend() const noexcept { return items_.rend(); }
    const_reverse_iterator crbegin() const noexcept { return items_.crbegin(); }
    const_reverse_iterator crend() const noexcept { return items_.crend(); }
    bool empty() const noexcept { return items_.empty(); }
    size_type size() const noexcept { return items_.size(); }
    size_type max_size() const noexcept { return items_.max_size(); }
    size_type capacity() const noexcept { return items_.capacity(); }
    /// @}

    /// @name References for writing
    /// @{
    reference at(size_type index) { return exposed().at(index); }
    reference operator[](size_type index) { return exposed()[index]; }
    reference front() { return exposed().front(); }
    reference back() { return exposed().back(); }
    pointer data() noexcept { return exposed().data(); }
    iterator begin() noexcept { return exposed().begin(); }
    iterator end() noexcept { return exposed().end(); }
    reverse_iterator rbegin() noexcept { return exposed().rbegin(); }
    reverse_iterator rend() noexcept { return exposed().rend(); }
    /// @}

    /// @name Changes of size
    /// @{
    void reserve(size_type capacity) {
        edit(size(), [&] { items_.reserve(capacity); });
    }
    void shrink_to_fit() {
        edit(size(), [&] { items_.shrink_to_fit(); });
    }
    void clear() noexcept {
        items_.clear();
        forget();
    }
    void push_back(const Item& value) {
        edit(size(), [&] { items_.push_back(value); });
    }
    void push_back(Item&& value) {
        edit(size(), [&] { items_.push_back(std::move(value)); });
    }
    template <typename... Arguments>
    void emplace_back(Arguments&&... arguments) {
        edit(size(), [&] { items_.emplace_back(std::forward<Arguments>(arguments)...); });
    }
    void pop_back() {
        edit(size() - 1, [&] { items_.pop_back(); });
    }
    void resize(size_type count) {
        edit(std::min(count, size()), [&] { items_.resize(count); });
    }
    void resize(size_type count, const Item& value) {
        edit(std::min(count, size()), [&] { items_.resize(count, value); });
    }
    iterator insert(const_iterator place, const Item& value) { return insertAt(place, value); }
    iterator insert(const_iterator place, Item&& value) {
        return insertAt(place, std::move(value));
    }
    iterator insert(const_iterator place, size_type count, const Item& value) {
        return insertAt(place, count, value);
    }
    template <typename Input, typename = typename std::iterator_traits<Input>::iterator_category>
    iterator insert(const_iterator place, Input first, Input last) {
        return insertAt(place, first, last);
    }
    iterator insert(const_iterator place, std::initializer_list<Item> values) {
        return insertAt(place, values);
    }
    template <typename... Arguments>
    iterator emplace(const_iterator place, Arguments&&... arguments) {
        const auto position = positionOf(place);
        edit(position, [&] { items_.emplace(place, std::forward<Arguments>(arguments)...); });
        return begin() + static_cast<difference_type>(position);
    }
    iterator erase(const_iterator place) { return erase(place, place + 1); }
    iterator erase(const_iterator first, const_iterator last) {
        const auto position = positionOf(first);
        edit(position, [&] { items_.erase(first, last); });
        return begin() + static_cast<difference_type>(position);
    }
    /// @}

    /// References keep their elements, which belong to the other array afterwards.
    void swap(TrackedVector& other) noexcept {
        items_.swap(other.items_);
        const bool wasExposed = isExposed();
        exposed_ = other.isExposed();
        other.exposed_ = wasExposed;
        noteChange(0);
        other.noteChange(0);
    }
    /// Whoever held references into @p other can write to this array afterwards.
    void swap(Items& other) noexcept { exposed().swap(other); }
    friend void swap(TrackedVector& left, TrackedVector& right) noexcept { left.swap(right); }
    friend void swap(TrackedVector& left, Items& right) noexcept { left.swap(right); }
    friend void swap(Items& left, TrackedVector& right) noexcept { right.swap(left); }

protected:
    friend class PlaybackTracks;

    /// What threads that only read may look up and note at once: each notes the same.
    template <typename Value>
    class Note {
    public:
        explicit Note(Value value) noexcept : value_(value) {}
        operator Value() const noexcept { return value_.load(std::memory_order_relaxed); }
        Note& operator=(Value value) noexcept {
            value_.store(value, std::memory_order_relaxed);
            return *this;
        }

    private:
        std::atomic<Value> value_;
    };

    bool isExposed() const noexcept { return exposed_; }
    /// Leading elements that are as they were at the last markSeen().
    size_type unchangedSize() const noexcept { return unchanged_; }
    void markSeen() noexcept { unchanged_ = size(); }
    /// Another number after every change; 0 while a change could pass unnoticed.
    std::uint64_t revision() const noexcept { return isExposed() ? 0 : std::uint64_t(revision_); }
    /// The revision. Unless that is 0, the next change is told by noteWatchedEdit().
    std::uint64_t watch() const noexcept {
        if (isExposed()) return 0;
        if (!watched_) watched_ = true;  // Written once: reading threads share the cache line.
        return revision_;
    }

    void noteChange(size_type kept) noexcept {
        unchanged_ = std::min<size_type>(unchanged_, kept);
        noteRevision();
    }
    /// Of a change that leaves all that was seen as it is.
    void noteRevision() noexcept {
        revision_ = revision_ + 1;
        if (!watched_) return;
        watched_ = false;
        noteWatchedEdit();
    }

    Items& exposed() noexcept {
        // Only a change is written: reading threads share the cache line.
        if (!exposed_) {
            exposed_ = true;
            noteChange(0);
        }
        return items_;
    }
    void forget() noexcept {
        exposed_ = false;
        noteChange(0);
    }
    /// Runs @p change, which ends every reference. Noted first, since it may fail half-way.
    template <typename Change>
    void replace(const Change& change) {
        noteChange(0);
        change();
        exposed_ = false;
    }
    /// Runs @p change, which leaves the first @p kept elements as they are.
    template <typename Change>
    void edit(size_type kept, const Change& change) {
        const Item* const storage = std::as_const(items_).data();
        noteChange(kept);
        change();
        // A reallocation ends every reference.
        if (std::as_const(items_).data() != storage) exposed_ = false;
    }
    template <typename... Values>
    iterator insertAt(const_iterator place, Values&&... values) {
        const auto position = positionOf(place);
        edit(position, [&] { items_.insert(place, std::forward<Values>(values)...); });
        return begin() + static_cast<difference_type>(position);
    }
    size_type positionOf(const_iterator place) const noexcept {
        return static_cast<size_type>(place - cbegin());
    }

    Items items_;
    Note<size_type> unchanged_{0};  // None while exposed.
    Note<std::uint64_t> revision_{1};
    Note<bool> exposed_{false};  // A reference for writing may be valid.
    mutable Note<bool> watched_{false};
};

/// @name Comparisons among arrays, and between an array and a std::vector
/// @{
template <typename Item>
std::true_type isTracked(const TrackedVector<Item>&);
std::false_type isTracked(...);
template <typename Item>
std::vector<Item> vectorOf(const TrackedVector<Item>&);
template <typename Item>
std::vector<Item> vectorOf(const std::vector<Item>&);

template <typename Left, typename Right>
using TrackedComparison = std::enable_if_t<
    std::conjunction_v<std::disjunction<decltype(isTracked(std::declval<const Left&>())),
                                        decltype(isTracked(std::declval<const Right&>()))>,
                       std::is_same<decltype(vectorOf(std::declval<const Left&>())),
                                    decltype(vectorOf(std::declval<const Right&>()))>>,
    bool>;

template <typename Left, typename Right>
TrackedComparison<Left, Right> operator==(const Left& left, const Right& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end());
}
template <typename Left, typename Right>
TrackedComparison<Left, Right> operator!=(const Left& left, const Right& right) {
    return !(left == right);
}
template <typename Left, typename Right>
TrackedComparison<Left, Right> operator<(const Left& left, const Right& right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end());
}
template <typename Left, typename Right>
TrackedComparison<Left, Right> operator>(const Left& left, const Right& right) {
    return right < left;
}
template <typename Left, typename Right>
TrackedComparison<Left, Right> operator<=(const Left& left, const Right& right) {
    return !(right < left);
}
template <typename Left, typename Right>
TrackedComparison<Left, Right> operator>=(const Left& left, const Right& right) {
    return !(left < right);
}
/// @}

}  // namespace vantorix::scene
