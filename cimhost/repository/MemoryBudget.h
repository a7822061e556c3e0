#pragma once

#include <cstddef>

namespace cimhost {

/// How much memory definitions may take.
///
/// A short text can ask for a lot of memory: inheritance and qualifier defaults copy what was
/// written once. Whoever makes or copies definitions charges the (estimated) bytes before it does.
/// Not safe from several threads: only the one that fills the repository uses it.
class MemoryBudget {
public:
    static constexpr std::size_t limit = std::size_t{128} << 20U;

    /// Throws CimError serverLimitsExceeded when the limit would be passed; nothing is charged
    /// then.
    void charge(std::size_t bytes);

    std::size_t used() const noexcept { return _used; }

private:
    std::size_t _used = 0;
};

}  // namespace cimhost
