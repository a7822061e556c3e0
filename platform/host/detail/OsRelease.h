#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The value of a variable in the text of an os-release file (os-release(5)), its quotes and
/// escapes resolved; nothing when it is not set or is all blanks. Of several settings the last one
/// counts.
std::optional<std::string> osReleaseValue(std::string_view text, std::string_view name);
