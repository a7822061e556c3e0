#pragma once

/// Makes `operator new` of this test program fail on order. For one thread: that which calls.
namespace cimhost {

/// The next allocations succeed as often as this, the one after throws std::bad_alloc, and those
/// after that succeed again.
void failAllocationAfter(int successes) noexcept;

/// Nothing fails any more. True when the ordered failure has happened.
bool healAllocation() noexcept;

}  // namespace cimhost
