#include "cimhost/http/ByteBudget.h"

#include <malloc.h>

namespace cimhost {
namespace {

/// So much must have become free before the allocator is asked to let go of it: each time costs
/// about a millisecond, in which other threads wait for it. The second holds once nobody has any.
constexpr std::uint64_t trimBytes = 16 * 1024 * 1024;
constexpr std::uint64_t lastTrimBytes = 4 * 1024 * 1024;

}  // namespace

bool ByteBudget::Share::grow(std::uint64_t count) noexcept {
    if (!_budget._take(count)) return false;
    _size += count;
    return true;
}

void ByteBudget::Share::shrink(std::uint64_t count) noexcept {
    if (count == 0) return;
    _size -= count;
    _budget._giveBack(count);
}

bool ByteBudget::_take(std::uint64_t count) noexcept {
    std::uint64_t used = _used;
    do {
        if (count > _limit - used) return false;
    } while (!_used.compare_exchange_weak(used, used + count));
    used += count;
    std::uint64_t peak = _peak;
    while (peak < used && !_peak.compare_exchange_weak(peak, used)) {
    }
    return true;
}

void ByteBudget::_giveBack(std::uint64_t count) noexcept {
    const std::uint64_t left = _used.fetch_sub(count) - count;
    std::uint64_t peak = _peak;
    const std::uint64_t threshold = left == 0 ? lastTrimBytes : trimBytes;
    if (_kind != Kind::heap || peak < left + threshold) return;
    if (_peak.compare_exchange_strong(peak, left)) malloc_trim(0);
}

}  // namespace cimhost
