#pragma once

#include <string>
#include <string_view>

/// Text of others on its way to who reads it. Safe from several threads.
namespace cimhost {

/// Appends it for a terminal: line ends and ASCII control characters as blanks; what a terminal may
/// take for a control character or turns text round as \u202e or \x9b; all else as it is.
void appendVisibly(std::string& line, std::string_view text);

/// Appends it as a JSON string with its quotes. Those characters are escapes, and a byte that is no
/// UTF-8 is U+FFFD.
void appendJson(std::string& line, std::string_view text);

/// Appends `,"name":"text"`, a member of a JSON object behind others.
void appendMember(std::string& object, std::string_view name, std::string_view text);

}  // namespace cimhost
