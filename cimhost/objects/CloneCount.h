#pragma once

#include <cstddef>

namespace cimhost {

/// Counts the clones that a call leaves behind: those that were made on this thread, less those
/// that were released on it. As a local variable around the call; counts nest, and a call does not
/// count for the one around it.
class CloneCount {
public:
    CloneCount() noexcept : _before(ofThread) {}
    ~CloneCount() { ofThread = _before; }
    CloneCount(const CloneCount&) = delete;
    CloneCount& operator=(const CloneCount&) = delete;

    std::ptrdiff_t left() const noexcept { return ofThread - _before; }

    // By whoever clones and releases for a provider.
    static void made() noexcept { ++ofThread; }
    static void released() noexcept { --ofThread; }

private:
    inline static constinit thread_local std::ptrdiff_t ofThread = 0;

    std::ptrdiff_t _before;
};

}  // namespace cimhost
