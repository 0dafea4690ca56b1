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

namespace vantorix::scene {

/// The floats of a stream, with the interface of std::vector<float> and conversions in both
/// directions.
///
/// It knows whether a reference, pointer or iterator that it handed out for writing can still be
/// valid, and how much of it is as an index over it has seen it. Read through a const reference
/// where nothing is to be written: a stream finds equal tuples faster while no writing reference
/// can be valid. Such references end as those of std::vector do: with a reallocation, clear() and
/// assignment.
/// Threads: as std::vector<float>; several may read at once, also by way of such references.
class FloatArray {
    using Floats = std::vector<float>;

public:
    using value_type = Floats::value_type;
    using allocator_type = Floats::allocator_type;
    using size_type = Floats::size_type;
    using difference_type = Floats::difference_type;
    using reference = Floats::reference;
    using const_reference = Floats::const_reference;
    using pointer = Floats::pointer;
    using const_pointer = Floats::const_pointer;
    using iterator = Floats::iterator;
    using const_iterator = Floats::const_iterator;
    using reverse_iterator = Floats::reverse_iterator;
    using const_reverse_iterator = Floats::const_reverse_iterator;

    FloatArray() = default;
    explicit FloatArray(size_type count) : floats_(count) {}
    FloatArray(size_type count, float value) : floats_(count, value) {}
    FloatArray(std::initializer_list<float> values) : floats_(values) {}
    /// Copies also from an expiring vector: references to its floats can outlive the move.
    FloatArray(const Floats& values) : floats_(values) {}
    template <typename Input, typename = typename std::iterator_traits<Input>::iterator_category>
    FloatArray(Input first, Input last) : floats_(first, last) {}

    FloatArray(const FloatArray& other) : floats_(other.floats_) {}
    FloatArray(FloatArray&& other) noexcept
        : floats_(std::move(other.floats_)), exposed_(other.isExposed()) {
        other.forget();
    }
    ~FloatArray() = default;

    FloatArray& operator=(const FloatArray& other) { return *this = other.floats_; }
    FloatArray& operator=(FloatArray&& other) noexcept {
        if (this == &other) return *this;
        floats_ = std::move(other.floats_);
        forget();
        exposed_ = other.isExposed();  // References into the other's storage lead here now.
        other.forget();
        return *this;
    }
    FloatArray& operator=(const Floats& values) {
        if (&values == &floats_) return *this;
        floats_ = values;
        forget();
        return *this;
    }
    FloatArray& operator=(std::initializer_list<float> values) {
        assign(values);
        return *this;
    }

    operator const Floats&() const noexcept { return floats_; }

    void assign(size_type count, float value) {
        floats_.assign(count, value);
        forget();
    }
    template <typename Input, typename = typename std::iterator_traits<Input>::iterator_category>
    void assign(Input first, Input last) {
        floats_.assign(first, last);
        forget();
    }
    void assign(std::initializer_list<float> values) {
        floats_.assign(values);
        forget();
    }
    allocator_type get_allocator() const noexcept { return floats_.get_allocator(); }

    /// @name Reading
    /// @{
    const_reference at(size_type index) const { return floats_.at(index); }
    const_reference operator[](size_type index) const { return floats_[index]; }
    const_reference front() const { return floats_.front(); }
    const_reference back() const { return floats_.back(); }
    const_pointer data() const noexcept { return floats_.data(); }
    const_iterator begin() const noexcept { return floats_.begin(); }
    const_iterator end() const noexcept { return floats_.end(); }
    const_iterator cbegin() const noexcept { return floats_.cbegin(); }
    const_iterator cend() const noexcept { return floats_.cend(); }
    const_reverse_iterator rbegin() const noexcept { return floats_.rbegin(); }
    const_reverse_iterator rend() const noexcept { return floats_.rend(); }
    const_reverse_iterator crbegin() const noexcept { return floats_.crbegin(); }
    const_reverse_iterator crend() const noexcept { return floats_.crend(); }
    bool empty() const noexcept { return floats_.empty(); }
    size_type size() const noexcept { return floats_.size(); }
    size_type max_size() const noexcept { return floats_.max_size(); }
    size_type capacity() const noexcept { return floats_.capacity(); }
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
        edit(size(), [&] { floats_.reserve(capacity); });
    }
    void shrink_to_fit() {
        edit(size(), [&] { floats_.shrink_to_fit(); });
    }
    void clear() noexcept {
        floats_.clear();
        forget();
    }
    void push_back(float value) {
        edit(size(), [&] { floats_.push_back(value); });
    }
    reference emplace_back(float value = 0.0f) {
        push_back(value);
        return back();
    }
    void pop_back() {
        edit(size() - 1, [&] { floats_.pop_back(); });
    }
    void resize(size_type count, float value = 0.0f) {
        edit(std::min(count, size()), [&] { floats_.resize(count, value); });
    }
    /// Appends @p count floats from outside this array, and hands out no reference.
    void append(const float* values, size_type count) {
        edit(size(), [&] { floats_.insert(floats_.end(), values, values + count); });
    }
    iterator insert(const_iterator place, float value) { return insertAt(place, value); }
    iterator insert(const_iterator place, size_type count, float value) {
        return insertAt(place, count, value);
    }
    template <typename Input, typename = typename std::iterator_traits<Input>::iterator_category>
    iterator insert(const_iterator place, Input first, Input last) {
        return insertAt(place, first, last);
    }
    iterator insert(const_iterator place, std::initializer_list<float> values) {
        return insertAt(place, values);
    }
    iterator emplace(const_iterator place, float value = 0.0f) { return insertAt(place, value); }
    iterator erase(const_iterator place) { return erase(place, place + 1); }
    iterator erase(const_iterator first, const_iterator last) {
        const auto position = positionOf(first);
        edit(position, [&] { floats_.erase(first, last); });
        return begin() + static_cast<difference_type>(position);
    }
    /// @}

    /// References keep their floats, which belong to the other array afterwards.
    void swap(FloatArray& other) noexcept {
        floats_.swap(other.floats_);
        const bool wasExposed = isExposed();
        exposed_ = other.isExposed();
        other.exposed_ = wasExposed;
        noteChange(0);
        other.noteChange(0);
    }
    /// Whoever held references into @p other can write to this array afterwards.
    void swap(Floats& other) noexcept { exposed().swap(other); }
    friend void swap(FloatArray& left, FloatArray& right) noexcept { left.swap(right); }
    friend void swap(FloatArray& left, Floats& right) noexcept { left.swap(right); }
    friend void swap(Floats& left, FloatArray& right) noexcept { right.swap(left); }

private:
    friend class KeyOrder;
    friend class TupleIndex;

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
    /// Leading floats that are as they were at the last markSeen().
    size_type unchangedSize() const noexcept { return unchanged_; }
    void markSeen() noexcept { unchanged_ = size(); }
    /// Another number after every change; 0 while a change could pass unnoticed.
    std::uint64_t revision() const noexcept { return isExposed() ? 0 : std::uint64_t(revision_); }

    void noteChange(size_type kept) noexcept {
        unchanged_ = std::min<size_type>(unchanged_, kept);
        revision_ = revision_ + 1;
    }

    Floats& exposed() noexcept {
        // Only a change is written: reading threads share the cache line.
        if (!exposed_) {
            exposed_ = true;
            noteChange(0);
        }
        return floats_;
    }
    void forget() noexcept {
        exposed_ = false;
        noteChange(0);
    }
    /// Runs @p change, which leaves the first @p kept floats as they are.
    template <typename Change>
    void edit(size_type kept, const Change& change) {
        const float* const storage = std::as_const(floats_).data();
        noteChange(kept);
        change();
        // A reallocation ends every reference.
        if (std::as_const(floats_).data() != storage) exposed_ = false;
    }
    template <typename... Values>
    iterator insertAt(const_iterator place, const Values&... values) {
        const auto position = positionOf(place);
        edit(position, [&] { floats_.insert(place, values...); });
        return begin() + static_cast<difference_type>(position);
    }
    size_type positionOf(const_iterator place) const noexcept {
        return static_cast<size_type>(place - cbegin());
    }

    Floats floats_;
    Note<size_type> unchanged_{0};  // None while exposed.
    Note<std::uint64_t> revision_{1};
    Note<bool> exposed_{false};  // A reference for writing may be valid.
};

/// @name Comparisons among arrays, and between an array and a std::vector<float>
/// @{
template <typename Operand>
constexpr bool isFloatList = std::is_convertible_v<const Operand&, const std::vector<float>&>;
template <typename Left, typename Right>
constexpr bool hasFloatArray =
    std::is_same_v<Left, FloatArray> || std::is_same_v<Right, FloatArray>;
template <typename Left, typename Right>
using FloatArrayComparison =
    std::enable_if_t<std::conjunction_v<std::bool_constant<hasFloatArray<Left, Right>>,
                                        std::bool_constant<isFloatList<Left>>,
                                        std::bool_constant<isFloatList<Right>>>,
                     bool>;

template <typename Left, typename Right>
FloatArrayComparison<Left, Right> operator==(const Left& left, const Right& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end());
}
template <typename Left, typename Right>
FloatArrayComparison<Left, Right> operator!=(const Left& left, const Right& right) {
    return !(left == right);
}
template <typename Left, typename Right>
FloatArrayComparison<Left, Right> operator<(const Left& left, const Right& right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end());
}
template <typename Left, typename Right>
FloatArrayComparison<Left, Right> operator>(const Left& left, const Right& right) {
    return right < left;
}
template <typename Left, typename Right>
FloatArrayComparison<Left, Right> operator<=(const Left& left, const Right& right) {
    return !(right < left);
}
template <typename Left, typename Right>
FloatArrayComparison<Left, Right> operator>=(const Left& left, const Right& right) {
    return !(left < right);
}
/// @}

}  // namespace vantorix::scene
