// The version strings of firmware and agents, as PYLUtil reads them.

#include "common/PYLUtil.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

namespace PYL {

namespace {

constexpr unsigned short noValue = 65535;

bool isPrefix(const char* token) noexcept {
    return token[0] != '\0' && token[1] == '\0' && std::strchr("TFv", token[0]) != nullptr;
}

/// The part with this number, in a text that is cut at its dots; null when there are fewer. Empty
/// parts do not count.
const char* partOf(char* text, int index) noexcept {
    char* rest = nullptr;
    const char* token = strtok_r(text, ".", &rest);
    if (token && isPrefix(token)) token = strtok_r(nullptr, ".", &rest);
    for (; token && index > 0; --index) token = strtok_r(nullptr, ".", &rest);
    return token;
}

/// Leading digits as strtol reads them, cut to 16 bits; none when the number does not fit a long.
std::optional<unsigned short> parsed(const char* token) noexcept {
    const int saved = std::exchange(errno, 0);
    const long value = std::strtol(token, nullptr, 10);
    const int error = std::exchange(errno, saved);
    if (error != 0) return std::nullopt;
    return static_cast<unsigned short>(value);
}

}  // namespace

bool PYLUtil::validateVersion(const std::string& version) noexcept {
    return version.find_first_not_of("0123456789.TFbv") == std::string::npos;
}

bool PYLUtil::stringVersionGetPart(const std::string& version, unsigned short& part, int index) {
    part = noValue;
    if (index < 0) return false;
    std::string text = version;
    const auto* const token = partOf(text.data(), index);
    if (!token) return false;
    part = parsed(token).value_or(noValue);
    return true;
}

bool PYLUtil::stringVersionToMajor(const std::string& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 0);
}

bool PYLUtil::stringVersionToMinor(const std::string& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 1);
}

bool PYLUtil::stringVersionToRevision(const std::string& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 2);
}

bool PYLUtil::stringVersionToBuild(const std::string& version, unsigned short& part) {
    return stringVersionGetPart(version, part, 3);
}

}  // namespace PYL
