#pragma once

#include <cstddef>
#include <new>

#include <boost/shared_ptr.hpp>

namespace vantorix::scene {

/// Room for the reference counts in front of an object that shares one allocation with them.
constexpr std::size_t blockHeaderSize = 48;

/// Puts a shared pointer's counts at the start of a block, and frees the block with them.
template <typename T>
class BlockAllocator {
public:
    using value_type = T;

    explicit BlockAllocator(void* block) : block_(block) {}
    template <typename Other>
    BlockAllocator(const BlockAllocator<Other>& other) : block_(other.block()) {}

    T* allocate(std::size_t) {
        static_assert(sizeof(T) <= blockHeaderSize, "the counts must fit in front of the object");
        return static_cast<T*>(block_);
    }
    void deallocate(T* counts, std::size_t) { ::operator delete(counts); }
    void* block() const { return block_; }

    template <typename Other>
    bool operator==(const BlockAllocator<Other>& other) const {
        return block_ == other.block();
    }
    template <typename Other>
    bool operator!=(const BlockAllocator<Other>& other) const {
        return block_ != other.block();
    }

private:
    void* block_;
};

/// An object that @p construct(void* place, void* trailing) makes at its place, with its reference
/// counts before it and @p trailingSize bytes after it, all in one allocation.
template <typename T, typename Construct>
boost::shared_ptr<T> makeBlock(std::size_t trailingSize, const Construct& construct) {
    struct Destroy {
        void operator()(T* object) const { object->~T(); }
    };
    auto* const block =
        static_cast<std::byte*>(::operator new(blockHeaderSize + sizeof(T) + trailingSize));
    auto* const place = block + blockHeaderSize;
    T* object = nullptr;
    try {
        object = construct(place, place + sizeof(T));
    } catch (...) {
        ::operator delete(block);
        throw;
    }
    return boost::shared_ptr<T>(object, Destroy{}, BlockAllocator<T>(block));
}

}  // namespace vantorix::scene
