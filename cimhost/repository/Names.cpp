#include "cimhost/repository/Names.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace cimhost {
namespace {

// Not std::tolower: that one follows the locale.
constexpr unsigned char folded(char character) noexcept {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

// Every character beyond ASCII may stand in a name.
constexpr bool beginsName(char character) noexcept {
    const unsigned char byte = folded(character);
    return (byte >= 'a' && byte <= 'z') || byte == '_' || byte >= 0x80U;
}

constexpr bool continuesName(char character) noexcept {
    return beginsName(character) || (character >= '0' && character <= '9');
}

}  // namespace

bool equalFolded(std::string_view left, std::string_view right) noexcept {
    // Most names are written as the class has them: eight bytes at once while they are alike.
    constexpr std::size_t word = 8;
    while (left.size() >= word && std::memcmp(left.data(), right.data(), word) == 0) {
        left.remove_prefix(word);
        right.remove_prefix(word);
    }
    return std::equal(left.begin(), left.end(), right.begin(),
                      [](char a, char b) { return a == b || folded(a) == folded(b); });
}

std::string_view trimmed(std::string_view text, std::string_view marks) noexcept {
    const std::size_t first = text.find_first_not_of(marks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(marks) - first + 1);
}

std::size_t findNameEnd(std::string_view text) noexcept {
    if (text.empty() || !beginsName(text.front())) return 0;
    const auto* const end = std::ranges::find_if_not(text, continuesName);
    return static_cast<std::size_t>(end - text.begin());
}

bool NameLess::operator()(std::string_view left, std::string_view right) const noexcept {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char a, char b) { return folded(a) < folded(b); });
}

std::size_t NameHash::operator()(std::string_view name) const noexcept {
    // FNV-1a: names are short, and a schema is read from files that the operator trusts.
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const char character : name) hash = (hash ^ folded(character)) * 0x100000001b3U;
    return static_cast<std::size_t>(hash);
}

}  // namespace cimhost
