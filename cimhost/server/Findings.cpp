#include "cimhost/server/Findings.h"

#include "cimhost/server/ShownText.h"

#include <charconv>

namespace cimhost {
namespace {

// The number after the last colon of the text, which is cut off with it; 0 when there is none.
std::size_t takeNumber(std::string_view& text) noexcept {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos || colon == 0) return 0;
    std::size_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + colon + 1, end, number);
    if (error != std::errc{} || stop != end) return 0;
    text = text.substr(0, colon);
    return number;
}

std::string quoted(std::string_view text) {
    std::string result;
    appendJson(result, text);
    return result;
}

std::string objectOf(std::string_view finding) {
    const PlacedText placed = placedText(finding);
    std::string result = "{";
    if (!placed.file.empty()) {
        result += "\"file\": " + quoted(placed.file) + ", \"line\": " + std::to_string(placed.line);
        if (placed.column != 0) result += ", \"column\": " + std::to_string(placed.column);
        result += ", ";
    }
    return result + "\"text\": " + quoted(placed.text) + "}";
}

std::string arrayOf(const Findings& findings) {
    std::string result;
    for (const std::string& finding : findings) {
        result += (result.empty() ? "\n  " : ",\n  ") + objectOf(finding);
    }
    return "[" + result + "]";
}

}  // namespace

PlacedText placedText(std::string_view finding) noexcept {
    PlacedText result;
    result.text = finding;
    const std::size_t end = finding.find(": ");
    if (end == std::string_view::npos) return result;
    std::string_view place = finding.substr(0, end);
    const std::size_t last = takeNumber(place);
    if (last == 0) return result;
    const std::size_t before = takeNumber(place);
    result.file = place;
    result.line = before == 0 ? last : before;
    result.column = before == 0 ? 0 : last;
    result.text = finding.substr(end + 2);
    return result;
}

std::string findingsAsJson(const Findings& errors, const Findings& warnings) {
    return "{\"errors\": " + arrayOf(errors) + ",\n \"warnings\": " + arrayOf(warnings) + "}\n";
}

}  // namespace cimhost
