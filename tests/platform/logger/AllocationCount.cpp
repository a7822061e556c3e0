#include "tests/platform/logger/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {
thread_local int allocations = 0;
}  // namespace

int allocationCount() noexcept {
    return allocations;
}

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
