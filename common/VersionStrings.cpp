// The version strings of firmware and agents, as PYLUtil reads them.

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "common/PYLUtil.h"

namespace PYL {

namespace {

constexpr unsigned short noValue = 65535;

bool isPrefix(char const* token) noexcept {
    return token[0] != '\0' && token[1] == '\0' && std::strchr("TFv", token[0]) != nullptr;
}

/// The part with this number, in a text that is cut at its dots; null when there are fewer. Empty
/// parts do not count.
char const* partOf(char* text, int index) noexcept {
    char* rest = nullptr;
    char const* token = strtok_r(text, ".", &rest);
    if (token && isPrefix(token)) token = strtok_r(nullptr, ".", &rest);
    for (; token && index > 0; --index) token = strtok_r(nullptr, ".", &rest);
    return token;
}

/// Leading digits as strtol reads them, cut to 16 bits; none when the number does not fit a long.
std::optional<unsigned short> parsed(char const* token) noexcept {
    int const saved = std::exchange(errno, 0);
    long const value = std::strtol(token, nullptr, 10);
    int const error = std::exchange(errno, saved);
    if (error != 0) return std::nullopt;
    return static_cast<unsigned short>(value);
}

}  // namespace

bool PYLUtil::validateVersion(std::string const& version) noexcept {
    return version.find_first_not_of("0123456789.TFbv") == std::string::npos;
}

bool PYLUtil::stringVersionGetPart(std::string const& version, unsigned short& part, int index) {
    part = noValue;
    if (index < 0) return false;
    std::string text = version;
    auto const* const token = partOf(text.data(), index);
    if (!token) return false;
    part = parsed(token).value_or(noValue);
    return true;
}

bool PYLUtil::stringVersionToMajor(std::string const& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 0);
}

bool PYLUtil::stringVersionToMinor(std::string const& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 1);
}

bool PYLUtil::stringVersionToRevision(std::string const& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 2);
}

bool PYLUtil::stringVersionToBuild(std::string const& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 3);
}

}  // namespace PYL
