#include "cimhost/server/isolation/AwaitedCall.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <utility>

namespace cimhost {
namespace {

/// Those that are waited for, by number. The mutex guards what they count, too.
struct Awaited {
    std::mutex mutex;
    std::map<std::uint64_t, AwaitedCall*> calls;
};

Awaited& awaited() {
    static Awaited all;
    return all;
}

std::uint64_t nextNumber() noexcept {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

thread_local constinit AwaitedCall* innermost = nullptr;
thread_local constinit std::uint64_t current = 0;

}  // namespace

AwaitedCall::AwaitedCall() : _outer(innermost), _number(nextNumber()), _part(_number) {
    const std::lock_guard lock(awaited().mutex);
    awaited().calls.emplace(_number, this);
    innermost = this;
}

AwaitedCall::~AwaitedCall() {
    const std::lock_guard lock(awaited().mutex);
    awaited().calls.erase(_number);
    innermost = _outer;
}

Clock::time_point AwaitedCall::silentSince(Clock::time_point lastByte) {
    if (!innermost) return lastByte;
    const std::lock_guard lock(awaited().mutex);
    return innermost->_upCalls > 0 ? Clock::now() : std::max(lastByte, innermost->_lastUpCall);
}

std::uint64_t AwaitedCall::number() noexcept { return current; }

AwaitedCall::Part::Part(std::uint64_t number) noexcept : _outer(std::exchange(current, number)) {}

AwaitedCall::Part::~Part() { current = _outer; }

AwaitedCall::UpCall::UpCall(std::uint64_t number) : _number(number) {
    const std::lock_guard lock(awaited().mutex);
    const auto found = awaited().calls.find(_number);
    if (found != awaited().calls.end()) ++found->second->_upCalls;
}

AwaitedCall::UpCall::~UpCall() {
    const std::lock_guard lock(awaited().mutex);
    const auto found = awaited().calls.find(_number);
    if (found == awaited().calls.end()) return;
    --found->second->_upCalls;
    found->second->_lastUpCall = Clock::now();
}

}  // namespace cimhost
