#include "testing/cimhost/testing/Allocations.h"

#include <cstdlib>
#include <new>

namespace cimtest {
namespace {

struct State {
    int count = 0;
    int left = 0;  ///< allocations until the one that fails; 0 when none is to
    bool forever = false;
    bool hasFailed = false;
};
constinit thread_local State state;

bool mustFail() noexcept {
    ++state.count;
    if (state.left == 0) return false;
    if (state.left > 1) {
        --state.left;
        return false;
    }
    if (!state.forever) state.left = 0;
    state.hasFailed = true;
    return true;
}

void* allocate(std::size_t size) noexcept {
    return mustFail() ? nullptr : std::malloc(size ? size : 1);
}

}  // namespace

int allocationCount() noexcept { return state.count; }
bool allocationHasFailed() noexcept { return state.hasFailed; }

FailingAllocation::FailingAllocation(int nth, bool forever) noexcept {
    state.left = nth;
    state.forever = forever;
    state.hasFailed = false;
}

FailingAllocation::~FailingAllocation() { state.left = 0; }

}  // namespace cimtest

// Weak: a program that replaces some of them itself keeps its own.
#define PYL_WEAK __attribute__((weak))

PYL_WEAK void* operator new(std::size_t size) {
    if (void* const memory = cimtest::allocate(size)) return memory;
    throw std::bad_alloc();
}
PYL_WEAK void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return cimtest::allocate(size);
}
PYL_WEAK void operator delete(void* memory) noexcept { std::free(memory); }
PYL_WEAK void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
PYL_WEAK void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
