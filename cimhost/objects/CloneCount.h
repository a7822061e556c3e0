#pragma once

#include <atomic>
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
    static void made() noexcept { _add(1); }
    static void released() noexcept { _add(-1); }

    /// From now on those of all threads are counted together too, in `alive()`.
    static void countAll() noexcept { isCountingAll = true; }
    static std::ptrdiff_t alive() noexcept { return ofAll; }

private:
    static void _add(std::ptrdiff_t clones) noexcept {
        ofThread += clones;
        // Nobody asks for it but tests, and threads would meet here at every clone.
        if (isCountingAll.load(std::memory_order_relaxed)) ofAll += clones;
    }

    inline static constinit std::atomic<bool> isCountingAll = false;
    inline static constinit std::atomic<std::ptrdiff_t> ofAll = 0;
    inline static constinit thread_local std::ptrdiff_t ofThread = 0;

    std::ptrdiff_t _before;
};

}  // namespace cimhost
