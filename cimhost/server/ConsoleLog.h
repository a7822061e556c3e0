#pragma once

#include "cimhost/objects/Broker.h"

#include <string_view>

namespace cimhost {

/// Writes log lines of cimhost and of the modules in it to standard error, each in one piece:
///
///     2024-05-01T12:00:00.123Z warning Fans: fan 3 does not answer
///
/// Line ends and ASCII control characters within a message go out as blanks; what a terminal may
/// take for a control character or turns text round, as \u202e or \x9b.
class ConsoleLog final : public BrokerLog {
public:
    /// Lines less urgent than `least` are dropped.
    explicit ConsoleLog(Level least) noexcept : _least(least) {}
    void write(Level level, std::string_view source, std::string_view message) noexcept override;

private:
    Level _least;
};

std::string_view levelName(BrokerLog::Level level) noexcept;

}  // namespace cimhost
