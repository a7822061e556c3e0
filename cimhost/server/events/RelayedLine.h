#pragma once

#include <string>
#include <string_view>

namespace cimhost {

/// A line that the process of a module has written to standard error, as the object that ConsoleLog
/// makes of its lines: its own where it is such an object or reads like a line of text from one; of
/// any other, which a library or the crash of the module wrote, one of now with the module as
/// component and level information. Safe from several threads.
std::string relayedLine(std::string_view module, std::string_view line);

}  // namespace cimhost
