#pragma once

#include "platform/ipmi/BmcTransport.h"

#include <cstdint>
#include <optional>
#include <vector>

/// The VM codec of the OpenIPMI simulator (its manual page ipmi_lan(5)): messages and commands in a
/// byte stream, each closed by a mark, with marks inside escaped.
namespace ipmi {

constexpr std::uint8_t messageMark = 0xA0;
constexpr std::uint8_t commandMark = 0xA1;
constexpr std::uint8_t escapeMark = 0xAA;

/// A request as it goes over the wire.
std::vector<std::uint8_t> encodeRequest(const IpmiRequest& request, std::uint8_t sequence);

/// What a client says first: its protocol version, and that nobody can be powered off or reset by
/// it.
const std::vector<std::uint8_t>& vmGreeting();

/// Finds the frames in what comes in.
class VmFrames {
public:
    /// Longer than any message: a stream without marks does not grow for ever.
    static constexpr std::size_t longestFrame = 512;

    enum class Found { nothing, message, command, tooLong };

    /// Takes one byte. After `message` or `command`, frame() holds it, without its mark and
    /// escapes.
    Found take(std::uint8_t byte);

    const std::vector<std::uint8_t>& frame() const noexcept { return _frame; }

private:
    std::vector<std::uint8_t> _frame;
    bool _complete = false;
    bool _escaped = false;
};

/// The response in a message frame, when it is the one to this request; none otherwise, also for a
/// frame that is too short or whose checksum is wrong.
std::optional<IpmiResponse> decodeResponse(const std::vector<std::uint8_t>& frame,
                                           const IpmiRequest& request, std::uint8_t sequence);

}  // namespace ipmi
