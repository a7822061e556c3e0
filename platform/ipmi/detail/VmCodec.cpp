#include "platform/ipmi/detail/VmCodec.h"

#include <numeric>

namespace ipmi {

namespace {

constexpr std::uint8_t escapeBit = 0x10;

void append(std::vector<std::uint8_t>& wire, std::uint8_t byte) {
    if (byte == messageMark || byte == commandMark || byte == escapeMark) {
        wire.push_back(escapeMark);
        byte |= escapeBit;
    }
    wire.push_back(byte);
}

/// What makes the sum of a frame zero.
std::uint8_t checksum(const std::vector<std::uint8_t>& bytes) {
    return static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0));
}

}  // namespace

std::vector<std::uint8_t> encodeRequest(const IpmiRequest& request, std::uint8_t sequence) {
    std::vector<std::uint8_t> frame{
        sequence, static_cast<std::uint8_t>(request.networkFunction << 2U), request.command};
    frame.insert(frame.end(), request.data.begin(), request.data.end());
    frame.push_back(checksum(frame));
    std::vector<std::uint8_t> wire;
    wire.reserve(2 * frame.size() + 1);
    for (const auto byte : frame) append(wire, byte);
    wire.push_back(messageMark);
    return wire;
}

const std::vector<std::uint8_t>& vmGreeting() {
    constexpr std::uint8_t version = 0xFF;
    constexpr std::uint8_t capabilities = 0x08;
    static const std::vector<std::uint8_t> greeting{version,      1, commandMark,
                                                    capabilities, 0, commandMark};
    return greeting;
}

VmFrames::Found VmFrames::take(std::uint8_t byte) {
    if (_complete) {
        _frame.clear();
        _complete = _escaped = false;
    }
    if (byte == messageMark || byte == commandMark) {
        _complete = true;
        return byte == messageMark ? Found::message : Found::command;
    }
    if (byte == escapeMark) {
        _escaped = true;
        return Found::nothing;
    }
    if (_frame.size() >= longestFrame) return Found::tooLong;
    _frame.push_back(_escaped ? static_cast<std::uint8_t>(byte & ~escapeBit) : byte);
    _escaped = false;
    return Found::nothing;
}

std::optional<IpmiResponse> decodeResponse(const std::vector<std::uint8_t>& frame,
                                           const IpmiRequest& request, std::uint8_t sequence) {
    constexpr std::size_t leastSize = 5;  // sequence, function, command, completion code, checksum
    if (frame.size() < leastSize || checksum(frame) != 0) return std::nullopt;
    const bool isOurs = frame[0] == sequence && frame[1] >> 2U == (request.networkFunction | 1U) &&
                        frame[2] == request.command;
    if (!isOurs) return std::nullopt;
    return IpmiResponse{frame[3], {frame.begin() + 4, frame.end() - 1}};
}

}  // namespace ipmi
