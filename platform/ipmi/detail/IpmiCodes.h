#pragma once

#include <cstdint>
#include <string>

/// The numbers of IPMI 2.0 that are used here.
namespace ipmi {

constexpr std::uint8_t application = 0x06;  // network function
constexpr std::uint8_t oemGroup = 0x2E;     // requests begin with an IANA enterprise number

constexpr std::uint8_t getDeviceId = 0x01;
constexpr std::uint8_t getSystemGuid = 0x37;

constexpr std::uint8_t timeoutCode = 0xC3;

// A status is an errno value, or an IPMI completion code out of their way.
constexpr int completionBase = 0x1000;

constexpr int completionStatus(std::uint8_t code) noexcept { return completionBase | code; }
constexpr bool isCompletionStatus(int status) noexcept { return (status & completionBase) != 0; }

/// In words, with the number (IPMI 2.0, table 5-2).
std::string completionText(int status);

}  // namespace ipmi
