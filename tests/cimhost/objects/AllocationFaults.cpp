#include "tests/cimhost/objects/AllocationFaults.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr int never = -1;

thread_local int allocationsLeft = never;
thread_local bool hasFailed = false;

}  // namespace

// In a file of their own, so that nobody inlines one half of a pair.
void* operator new(std::size_t size) {
    if (allocationsLeft != never && allocationsLeft-- == 0) {
        hasFailed = true;
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace cimhost {

void failAllocationAfter(int successes) noexcept {
    hasFailed = false;
    allocationsLeft = successes;
}

bool healAllocation() noexcept {
    allocationsLeft = never;
    return hasFailed;
}

}  // namespace cimhost
