#pragma once

#include <cstddef>

/// How often this program has called operator new so far, in all its libraries.
std::size_t allocationCount() noexcept;
