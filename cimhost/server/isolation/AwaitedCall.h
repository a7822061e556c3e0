#pragma once

#include "cimhost/http/Stream.h"

#include <cstdint>

namespace cimhost {

/// A request to another process, on the thread that waits for its answer. What its provider waits
/// for is no silence of its own: up-calls tell by number which request they are made inside of.
/// A thread that a provider has begun itself is inside of none.
class AwaitedCall {
public:
    /// The innermost one of the thread counts.
    AwaitedCall();
    ~AwaitedCall();
    AwaitedCall(const AwaitedCall&) = delete;
    AwaitedCall& operator=(const AwaitedCall&) = delete;

    /// Since when this thread's request is silent, of which the last byte came at `lastByte`: not
    /// for longer than its last up-call has ended, and not at all while one runs.
    static Clock::time_point silentSince(Clock::time_point lastByte);

    /// Of the request that this thread waits for, or works on; 0 for none.
    static std::uint64_t number() noexcept;

    /// What the thread does meanwhile is part of the other process's request.
    class Part {
    public:
        explicit Part(std::uint64_t number) noexcept;
        ~Part();
        Part(const Part&) = delete;
        Part& operator=(const Part&) = delete;

    private:
        std::uint64_t _outer;
    };

    /// An up-call that was made inside of the request runs meanwhile.
    class UpCall {
    public:
        explicit UpCall(std::uint64_t number);
        ~UpCall();
        UpCall(const UpCall&) = delete;
        UpCall& operator=(const UpCall&) = delete;

    private:
        std::uint64_t _number;
    };

private:
    AwaitedCall* _outer;
    std::uint64_t _number;
    Part _part;
    int _upCalls = 0;
    Clock::time_point _lastUpCall{};
};

}  // namespace cimhost
