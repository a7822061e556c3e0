#pragma once

/// How many blocks this thread has allocated with operator new. The program that links
/// AllocationCount.cpp has its global allocation functions replaced by counting ones.
int allocationCount() noexcept;
