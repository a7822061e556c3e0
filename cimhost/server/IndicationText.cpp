#include "cimhost/server/IndicationText.h"

#include "cimhost/objects/Description.h"
#include "cimhost/repository/DateTime.h"
#include "cimhost/repository/Names.h"
#include "cimhost/server/ShownText.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <string_view>

namespace cimhost {
namespace {

// The values of CIM_Indication.PerceivedSeverity, in order.
constexpr auto severities =
    std::to_array<std::string_view>({"Unknown", "Other", "Information", "Degraded/Warning", "Minor",
                                     "Major", "Critical", "Fatal/NonRecoverable"});

constexpr auto timeNames = std::to_array<std::string_view>({"IndicationTime", "EventTime"});
constexpr auto headlineNames =
    std::to_array<std::string_view>({"Summary", "Message", "Description"});

const Text* textOf(const Instance& indication, std::string_view property) noexcept {
    const PropertyValue* const found = indication.find(property);
    const auto* const text = found != nullptr ? found->value.get<Text>() : nullptr;
    return text != nullptr && !text->empty() ? text : nullptr;
}

std::string formatTime(std::time_t seconds) {
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return {text.data(), length};
}

std::string timeOf(const Instance& indication, std::chrono::system_clock::time_point arrival) {
    for (const std::string_view name : timeNames) {
        const Text* const text = textOf(indication, name);
        const auto time = text != nullptr ? microsecondsOf(*text) : std::nullopt;
        if (time && !isInterval(*text)) {
            return formatTime(static_cast<std::time_t>(*time / 1'000'000));
        }
    }
    return formatTime(std::chrono::system_clock::to_time_t(arrival));
}

std::string severityOf(const Instance& indication) {
    const PropertyValue* const found = indication.find("PerceivedSeverity");
    const auto* const number = found != nullptr ? found->value.get<std::uint64_t>() : nullptr;
    if (!number) return "-";
    if (*number == 1) {
        if (const Text* const other = textOf(indication, "OtherSeverity")) return other->str();
    }
    if (*number < severities.size()) return std::string(severities[*number]);
    return "severity " + std::to_string(*number);
}

const Text* headlineOf(const Instance& indication) noexcept {
    for (const std::string_view name : headlineNames) {
        if (const Text* const text = textOf(indication, name)) return text;
    }
    return nullptr;
}

bool isControl(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
}

void appendEscape(std::string& line, char control) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(control);
    line.append({'\\', 'x', digits[byte >> 4U], digits[byte & 15U]});
}

// As the log does, but for control characters: a sender's line ends are seen.
void appendVisible(std::string& line, std::string_view text) {
    while (!text.empty()) {
        const auto end = std::ranges::find_if(text, isControl);
        appendVisibly(line, {text.begin(), end});
        text = {end, text.end()};
        if (text.empty()) return;
        appendEscape(line, text.front());
        text.remove_prefix(1);
    }
}

void appendLine(std::string& text, std::string_view indent, std::string_view line) {
    text += indent;
    appendVisible(text, line);
    text += '\n';
}

}  // namespace

std::string describeIndication(const Instance& indication,
                               std::chrono::system_clock::time_point arrival) {
    constexpr std::string_view indent = "    ";
    std::string text;
    appendLine(text, "",
               timeOf(indication, arrival) + "  " + indication.className() + "  " +
                   severityOf(indication));
    if (const Text* const headline = headlineOf(indication)) appendLine(text, indent, *headline);
    for (const PropertyValue& property : indication.properties) {
        if (!property.value.isNull()) {
            appendLine(text, indent, property.name.str() + " = " + describe(property.value));
        }
    }
    return text;
}

}  // namespace cimhost
