#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// Text of bounded length, whose end is cut off where it does not fit. Async-signal-safe.
template <std::size_t room>
class BoundedText {
public:
    void append(std::string_view text) noexcept {
        const std::size_t taken = std::min(text.size(), room - _size);
        if (taken != 0) std::memcpy(_bytes.data() + _size, text.data(), taken);
        _size += taken;
    }

    /// Nothing in it ends a line, speaks to a terminal or turns text round from now on.
    void blankControls() noexcept {
        for (std::size_t place = 0; place < _size;) {
            const auto byte = static_cast<unsigned char>(_bytes[place]);
            const auto point = firstCodePoint(view().substr(place));
            const std::size_t length = point ? point->length : 1;
            const bool isControl =
                byte < 0x20 || byte == 0x7F || (point ? isDeceptive(point->value) : byte <= 0x9F);
            if (isControl) std::memset(_bytes.data() + place, ' ', length);
            place += length;
        }
    }

    std::string_view view() const noexcept { return {_bytes.data(), _size}; }

private:
    std::array<char, room> _bytes;  // not zeroed: one is made for each call
    std::size_t _size = 0;
};

/// What is asked of a provider. What the views lead to outlives the call.
struct AskedOfProvider {
    std::string_view module;
    std::string_view provider;
    std::string_view operation;  ///< as the MI's table has it: "getInstance"
    std::string_view method;     ///< of "invokeMethod" alone
};

/// The record of a call into a provider while it runs, so that it can be told what failed when the
/// call never returns. As a local variable around the call, on its thread; records nest.
class RunningCall {
public:
    using Words = BoundedText<1024>;

    /// The path is copied, null where the operation has none. Throws std::bad_alloc.
    RunningCall(const AskedOfProvider& asked, const ObjectPath* path);
    ~RunningCall();
    RunningCall(const RunningCall&) = delete;
    RunningCall& operator=(const RunningCall&) = delete;

    /// The innermost of the calling thread, or nullptr. Async-signal-safe.
    static const RunningCall* current() noexcept;

    /// The words of the innermost of each thread.
    static std::vector<std::string> all();

    const AskedOfProvider& asked() const noexcept { return _asked; }

    /// `root/test:TST_Fan.Name="a"`, or empty; the first 256 bytes. Async-signal-safe.
    std::string_view path() const noexcept { return _path.view(); }

    /// Appends `module Fans, provider FanProvider, operation getInstance, path root/...`.
    /// Async-signal-safe.
    void describe(Words& words) const noexcept;

private:
    AskedOfProvider _asked;
    BoundedText<256> _path;
    const RunningCall* _outer;
};

/// Logs for each thread the call that keeps it: `module ...: does not return`.
void logHangingCalls(BrokerLog& log);

}  // namespace cimhost
