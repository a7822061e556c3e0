#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

/// CIM names (classes, properties, keys, roles, namespaces) compare without regard to ASCII case
/// (DSP0004, 5.2.3). Pure functions, safe from several threads.
namespace cimhost {

/// The same for names of one length only.
bool equalFolded(std::string_view left, std::string_view right) noexcept;

// In line: nearly all names that differ are told apart by their lengths.
inline bool equalNames(std::string_view left, std::string_view right) noexcept {
    return left.size() == right.size() && equalFolded(left, right);
}

/// The first element with this `name`, or nullptr.
template <typename Elements>
auto findNamed(Elements& elements, std::string_view name) noexcept {
    const auto found =
        std::find_if(std::begin(elements), std::end(elements),
                     [name](const auto& each) { return equalNames(each.name, name); });
    return found == std::end(elements) ? nullptr : &*found;
}

bool containsName(const auto& names, std::string_view name) noexcept {
    return std::ranges::any_of(names,
                               [name](std::string_view each) { return equalNames(each, name); });
}

/// The text without any of these characters at its ends.
std::string_view trimmed(std::string_view text, std::string_view marks) noexcept;

/// The name as namespaces compare.
inline std::string_view trimmedSlashes(std::string_view name) noexcept {
    return trimmed(name, "/");
}

/// Where the identifier (DSP0004, annex A) that the text begins with ends; 0 when it begins with
/// none.
std::size_t findNameEnd(std::string_view text) noexcept;

/// Orders names as std::map and std::sort want it; transparent, so that look-ups make no string.
struct NameLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept;
};

struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const noexcept;
};

struct NameEqual {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept {
        return equalNames(left, right);
    }
};

}  // namespace cimhost
