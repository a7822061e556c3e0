// The command channel to the enclosure's module. docs/ipmi.md describes its messages.

#include "platform/ipmi/Bmc.h"
#include "platform/ipmi/detail/IpmiCodes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

using Bytes = std::vector<std::uint8_t>;
using Time = std::chrono::steady_clock::time_point;

enum ChannelCommand : std::uint8_t {
    channelBegin = 0x40,
    channelArgument = 0x41,
    channelExecute = 0x42,
    channelRead = 0x43,
    channelEnd = 0x44
};
enum Stream : std::uint8_t { standardOutputStream = 1, standardErrorStream = 2 };

// What fits through every system interface: a KCS interface takes 38 bytes (IPMI 2.0, 9).
constexpr std::size_t chunk = 24;
constexpr std::chrono::seconds commandTime{30};

void append(Bytes& bytes, std::uint32_t number, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
}

void append(Bytes& bytes, std::string_view text) {
    for (const char c : text) bytes.push_back(static_cast<std::uint8_t>(c));
}

std::uint32_t numberAt(const Bytes& bytes, std::size_t at, int size) {
    std::uint32_t number = 0;
    for (int i = 0; i < size; ++i) {
        number |= static_cast<std::uint32_t>(bytes[at + static_cast<std::size_t>(i)]) << (8 * i);
    }
    return number;
}

/// One command on its way through the channel. Each step returns an interface status.
class Session {
public:
    Session(BmcHandle& handle, Time deadline) noexcept : _handle(handle), _deadline(deadline) {}

    int begin(std::string_view command);
    int giveArgument(std::string_view text);
    int execute(std::size_t argumentSize, std::uint8_t& completionCode);
    int readOutputs(EncaOutput& standardOutput, EncaOutput& standardError);
    void end();

private:
    int _ask(ChannelCommand command, const Bytes& data, Bytes& answer, std::size_t leastSize);
    int _readOutput(Stream stream, std::size_t total, EncaOutput& output);

    BmcHandle& _handle;
    Time _deadline;
    std::uint8_t _number = 0;
    std::size_t _outputSize = 0;
    std::size_t _errorSize = 0;
};

int Session::_ask(ChannelCommand command, const Bytes& data, Bytes& answer, std::size_t leastSize) {
    constexpr int ianaSize = 3;
    IpmiRequest request{ipmi::oemGroup, command, {}};
    append(request.data, bmcManufacturerId, ianaSize);
    request.data.insert(request.data.end(), data.begin(), data.end());
    IpmiResponse response;
    const int status = _handle.transport->exchange(request, response, _deadline);
    if (status != 0) return status == ETIMEDOUT ? encaCommandTimeout : status;
    if (response.completionCode == ipmi::timeoutCode) return encaCommandTimeout;
    if (response.completionCode != 0) return ipmi::completionStatus(response.completionCode);
    if (response.data.size() < ianaSize + leastSize ||
        numberAt(response.data, 0, ianaSize) != bmcManufacturerId) {
        return EPROTO;
    }
    answer.assign(response.data.begin() + ianaSize, response.data.end());
    return 0;
}

int Session::begin(std::string_view command) {
    Bytes data;
    append(data, command);
    Bytes answer;
    const int status = _ask(channelBegin, data, answer, 1);
    if (status == 0) _number = answer[0];
    return status;
}

int Session::giveArgument(std::string_view text) {
    int status = 0;
    for (std::size_t at = 0; at < text.size() && status == 0; at += chunk) {
        Bytes data{_number};
        append(data, static_cast<std::uint32_t>(at), 2);
        append(data, text.substr(at, chunk));
        Bytes answer;
        status = _ask(channelArgument, data, answer, 0);
    }
    return status;
}

int Session::execute(std::size_t argumentSize, std::uint8_t& completionCode) {
    Bytes data{_number};
    append(data, static_cast<std::uint32_t>(argumentSize), 2);
    Bytes answer;
    const int status = _ask(channelExecute, data, answer, 9);
    if (status != 0) return status;
    completionCode = answer[0];
    _outputSize = numberAt(answer, 1, 4);
    _errorSize = numberAt(answer, 5, 4);
    return 0;
}

int Session::_readOutput(Stream stream, std::size_t total, EncaOutput& output) {
    const auto wanted = std::min(total, output.size);
    while (output.used < wanted) {
        Bytes data{_number, stream};
        append(data, static_cast<std::uint32_t>(output.used), 4);
        Bytes answer;
        const int status = _ask(channelRead, data, answer, 1);
        if (status != 0) return status;
        const auto count = std::min(answer.size(), wanted - output.used);
        std::memcpy(output.data + output.used, answer.data(), count);
        output.used += count;
    }
    return total > output.size ? static_cast<int>(encaOutputTooLarge) : 0;
}

int Session::readOutputs(EncaOutput& standardOutput, EncaOutput& standardError) {
    const int status = _readOutput(standardOutputStream, _outputSize, standardOutput);
    return status != 0 ? status : _readOutput(standardErrorStream, _errorSize, standardError);
}

/// The module forgets a command that nobody ends after a while, so that a failure here costs
/// nothing.
void Session::end() {
    Bytes answer;
    _ask(channelEnd, {_number}, answer, 0);
}

std::string_view boundedText(const char* text, std::size_t size) {
    return {text, ::strnlen(text, size)};
}

}  // namespace

int ENCA_CLI_Exec(BmcHandle& handle, const EncaRequest& request, EncaOutput& standardOutput,
                  EncaOutput& standardError, std::uint8_t& completionCode) {
    completionCode = 0;
    standardOutput.used = standardError.used = 0;
    if (!standardOutput.data || !standardError.data) return encaPointerIsNull;
    if (!handle.transport || !request.argument) return EINVAL;
    const auto line = boundedText(request.argument, encaArgumentSize - 1);
    Session session(handle, std::chrono::steady_clock::now() + commandTime);
    int status = session.begin(boundedText(request.command.data(), request.command.size()));
    if (status != 0) return status;
    status = session.giveArgument(line);
    if (status == 0) status = session.execute(line.size(), completionCode);
    if (status == 0 && completionCode == 0) {
        status = session.readOutputs(standardOutput, standardError);
    }
    session.end();
    return status;
}
