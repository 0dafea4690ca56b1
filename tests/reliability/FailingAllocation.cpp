#include "tests/reliability/FailingAllocation.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local long allocations = 0;  // Of this thread.
thread_local long failing = 0;      // The number of the one that fails, 0 for none.
thread_local bool hasFailed = false;

void* allocate(std::size_t size, std::size_t alignment) {
    if (++allocations == failing) {
        hasFailed = true;
        throw std::bad_alloc();
    }
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    void* const memory = std::aligned_alloc(alignment, rounded > 0 ? rounded : alignment);
    if (!memory) throw std::bad_alloc();
    return memory;
}

void* allocateOrNothing(std::size_t size) noexcept {
    try {
        return allocate(size, alignof(std::max_align_t));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size, alignof(std::max_align_t)); }
void* operator new[](std::size_t size) { return allocate(size, alignof(std::max_align_t)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocateOrNothing(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocateOrNothing(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }

namespace vantorix::test {

void failAllocation(long number) {
    hasFailed = false;
    allocations = 0;
    failing = number;
}

long allocationsSinceThen() { return allocations; }

bool hasAllocationFailed() { return hasFailed; }

bool endFailing() {
    failing = 0;
    return hasFailed;
}

}  // namespace vantorix::test
