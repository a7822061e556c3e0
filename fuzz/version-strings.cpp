// Version strings: what is valid and what each part is agree with the rules written out plainly.
#include "common/PYLUtil.h"
#include "fuzz/Require.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// The parts between the dots: empty ones do not count, nor does a first one that is T, F or v. The
/// text ends at a zero byte, as in C.
std::vector<std::string> partsOf(const std::string& version) {
    std::vector<std::string> parts = {""};
    for (const char c : version.substr(0, version.find('\0'))) {
        if (c == '.') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    std::erase(parts, "");
    if (!parts.empty() && (parts[0] == "T" || parts[0] == "F" || parts[0] == "v")) {
        parts.erase(parts.begin());
    }
    return parts;
}

bool isSpace(char c) { return std::string_view(" \t\n\v\f\r").find(c) != std::string_view::npos; }

/// The number that the text begins with, its last 16 bits; 65535 when it does not fit 64 bits.
unsigned short numberOf(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size() && isSpace(text[at])) ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    while (at < text.size() && text[at] == '0') ++at;
    std::string digits;
    unsigned number = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
        digits += text[at];
        number = (number * 10 + static_cast<unsigned>(text[at] - '0')) % 65536;
    }
    const std::string largest = negative ? "9223372036854775808" : "9223372036854775807";
    const bool shorter = digits.size() < largest.size();
    if (!shorter && (digits.size() > largest.size() || digits > largest)) return 65535;
    return static_cast<unsigned short>(negative ? 65536 - number : number);
}

bool isValid(const std::string& version) {
    for (const char c : version) {
        const bool digit = c >= '0' && c <= '9';
        if (!digit && c != '.' && c != 'T' && c != 'F' && c != 'b' && c != 'v') return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PYL::PYLUtil;
    const std::string version(reinterpret_cast<const char*>(data), size);
    require(PYLUtil::validateVersion(version) == isValid(version), "valid characters are valid");

    const auto parts = partsOf(version);
    const auto count = static_cast<int>(parts.size());
    for (int index = -1; index <= count + 1; ++index) {
        unsigned short part = 7;
        const bool found = PYLUtil::stringVersionGetPart(version, part, index);
        require(found == (index >= 0 && index < count), "a part is found where there is one");
        const unsigned short expected =
            found ? numberOf(parts[static_cast<std::size_t>(index)]) : 65535;
        require(part == expected, "the part is the number it begins with");
    }
    return 0;
}
