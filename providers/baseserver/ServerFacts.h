#pragma once

#include "platform/logger/Logger.h"

#include <cstdint>
#include <optional>
#include <string>

namespace baseserver {

/// What firmware and kernel tell of the server as a whole; nullopt where neither does.
struct ServerFacts {
    std::optional<std::string> manufacturer;
    std::optional<std::string> model;
    std::optional<std::string> serialNumber;
    std::optional<std::string> uuid;
    std::optional<std::string> productId;
    std::optional<std::string> biosVendor;
    std::optional<std::string> biosVersion;
    std::optional<std::string> operatingSystem;
    std::optional<std::string> serverSystemId;
    bool agentlessOnly = false;

    std::optional<std::string> chassisManufacturer;
    std::optional<std::string> chassisSerialNumber;
    std::optional<std::string> chassisAssetTag;
    std::optional<std::uint8_t> chassisType;  ///< DSP0134, "System Enclosure or Chassis Types"

    bool operator==(const ServerFacts&) const = default;
};

/// Reads them now. What is missing is told in the log by the readers below.
ServerFacts readServerFacts(Logger& log);

}  // namespace baseserver
