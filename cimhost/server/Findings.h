#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// What is wrong with the files that a host is to serve: texts for the user, each beginning with
/// "file:line: " or "file:line:column: " where it comes from a file.
using Findings = std::vector<std::string>;

/// A text with the place that it begins with taken off.
struct PlacedText {
    std::string_view file;  ///< empty where there is none
    std::size_t line = 0;
    std::size_t column = 0;  ///< 0 where there is none
    std::string_view text;
};
PlacedText placedText(std::string_view finding) noexcept;

/// `{"errors": [{"file": "a.mof", "line": 3, "text": "..."}], "warnings": []}`, with a line end.
std::string findingsAsJson(const Findings& errors, const Findings& warnings);

}  // namespace cimhost
