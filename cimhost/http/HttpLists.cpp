#include "cimhost/http/HttpLists.h"

#include <algorithm>
#include <optional>

namespace cimhost {
namespace {

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// Takes the text up to the mark off the front, and the mark.
std::string_view takePart(std::string_view& text, char mark) noexcept {
    const std::size_t end = text.find(mark);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return trimmed(part);
}

/// True when the parameters of a coding say that it is not taken: a weight of 0, 0.0, ...
bool isRefused(std::string_view parameters) noexcept {
    while (!parameters.empty()) {
        std::string_view value = takePart(parameters, ';');
        const std::string_view name = takePart(value, '=');
        if (equalTokens(name, "q")) return value.find_first_not_of("0.") == value.npos;
    }
    return false;
}

/// Takes an entity tag off the front of a list, without what marks it as weak: what compares for
/// If-None-Match is weak anyhow. Empty at the end, and for what is no tag.
std::string_view takeTag(std::string_view& list) noexcept {
    constexpr std::string_view between = " \t,";
    list.remove_prefix(std::min(list.find_first_not_of(between), list.size()));
    if (list.starts_with("W/")) list.remove_prefix(2);
    if (!list.starts_with('"')) return {};
    const std::size_t end = list.find('"', 1);
    if (end == list.npos) return {};
    const std::string_view tag = list.substr(0, end + 1);
    list.remove_prefix(end + 1);
    return tag;
}

}  // namespace

bool takesCoding(const HttpRequest& request, std::string_view coding) noexcept {
    std::optional<bool> isTaken;
    bool isAnyTaken = false;
    for (const HttpField& field : request.fields) {
        if (!equalTokens(field.name, "Accept-Encoding")) continue;
        for (std::string_view list = field.value; !list.empty();) {
            std::string_view parameters = takePart(list, ',');
            const std::string_view name = takePart(parameters, ';');
            if (equalTokens(name, coding)) isTaken = !isRefused(parameters);
            if (name == "*") isAnyTaken = !isRefused(parameters);
        }
    }
    return isTaken.value_or(isAnyTaken);
}

bool hasTag(const HttpRequest& request, std::string_view tag) noexcept {
    for (const HttpField& field : request.fields) {
        if (!equalTokens(field.name, "If-None-Match")) continue;
        if (field.value == "*") return true;
        std::string_view list = field.value;
        for (std::string_view each = takeTag(list); !each.empty(); each = takeTag(list)) {
            if (each == tag) return true;
        }
    }
    return false;
}

}  // namespace cimhost
