#pragma once

#include "platform/logger/Logger.h"

#include <string>
#include <vector>

namespace PYL {

/// What the enclosure is told of an alert. Borrows from the alert.
struct EnclosureEvent {
    int severity;
    const std::string& providerName;
    const std::string& eventID;
    const std::string& partNumber;
    const std::string& physicalLocation;
    const std::string& systemFirmwareVersion;
    const std::vector<std::string>& addresses;
};

/// Writes the event, if it is one of those that it wants, into the log of the blade enclosure's
/// management module, by the IPMI channel of the server. What became of it, and what failed, is in
/// the log.
void forwardToEnclosure(const EnclosureEvent& event, const Logger& log);

}  // namespace PYL
