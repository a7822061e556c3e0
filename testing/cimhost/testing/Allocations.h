#pragma once

namespace cimtest {

/// @file
/// The program that links Allocations.cpp has its global allocation functions replaced by ones that
/// count and fail on order, for the calling thread alone.

/// How many blocks this thread has asked for.
int allocationCount() noexcept;

/// While it lives the nth allocation of this thread (from 1) fails, or that and all that follow.
class FailingAllocation {
public:
    /// Counts from the thread's next allocation. `forever` has all that follow fail too.
    FailingAllocation(int nth, bool forever) noexcept;
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};

/// Whether the last failing allocation of this thread has happened.
bool allocationHasFailed() noexcept;

}  // namespace cimtest
