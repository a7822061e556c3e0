#pragma once

#include "platform/host/HostFacts.h"
#include "platform/logger/Logger.h"

namespace baseserver {

/// What firmware and kernel tell of the server as a whole.
struct ServerFacts : HostFacts {
    bool agentlessOnly = false;

    bool operator==(const ServerFacts&) const = default;
};

/// Reads them now, from one scan of the firmware's tables. What cannot be read is told in the log.
ServerFacts readServerFacts(Logger& log);

}  // namespace baseserver
