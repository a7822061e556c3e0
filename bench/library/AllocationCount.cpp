// Replaces operator new for the whole program, the shared library included, with one that counts.
#include "bench/library/AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

constinit std::atomic<std::size_t> count = 0;

}  // namespace

std::size_t allocationCount() noexcept { return count.load(std::memory_order_relaxed); }

void* operator new(std::size_t size) {
    count.fetch_add(1, std::memory_order_relaxed);
    if (void* const block = std::malloc(size)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
