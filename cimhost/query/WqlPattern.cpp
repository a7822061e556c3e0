#include "cimhost/query/WqlPattern.h"

#include "cimhost/repository/Utf8.h"

#include <cstddef>

namespace cimhost {

namespace {

/// The character at the front of the text; a byte that is no UTF-8 counts as one.
CodePoint characterOf(std::string_view text) noexcept {
    if (const auto point = firstCodePoint(text)) return *point;
    return {static_cast<unsigned char>(text.front()), 1};
}

/// The length of the set at the front of the pattern, with its brackets, or 0 when there is none.
std::size_t setLength(std::string_view pattern) noexcept {
    if (!pattern.starts_with('[')) return 0;
    // A bracket right behind the opening one belongs to the set.
    const std::size_t first = pattern.starts_with("[^") ? 3 : 2;
    const std::size_t end = pattern.find(']', first);
    return end == std::string_view::npos ? 0 : end + 1;
}

bool isInSet(char32_t character, std::string_view set) noexcept {
    set = set.substr(1, set.size() - 2);
    const bool isInverted = set.starts_with('^');
    if (isInverted) set.remove_prefix(1);
    bool isFound = false;
    while (!set.empty()) {
        const CodePoint low = characterOf(set);
        set.remove_prefix(low.length);
        CodePoint high = low;
        if (set.size() > 1 && set.front() == '-') {
            high = characterOf(set.substr(1));
            set.remove_prefix(1 + high.length);
        }
        isFound = isFound || (low.value <= character && character <= high.value);
    }
    return isFound != isInverted;
}

/// Matches one character against the step at the front of the pattern. The length of the step, or 0
/// when it does not match.
std::size_t matchStep(std::string_view pattern, char32_t character) noexcept {
    if (const std::size_t length = setLength(pattern); length != 0) {
        return isInSet(character, pattern.substr(0, length)) ? length : 0;
    }
    const CodePoint step = characterOf(pattern);
    return step.value == U'_' || step.value == character ? step.length : 0;
}

}  // namespace

// When a step fails, the text behind the last % takes up one character more: earlier ones need not
// be looked at again.
bool isLike(std::string_view text, std::string_view pattern) {
    bool hasAny = false;
    std::string_view anyText;
    std::string_view anyPattern;
    while (!text.empty()) {
        if (pattern.starts_with('%')) {
            pattern.remove_prefix(1);
            hasAny = true;
            anyText = text;
            anyPattern = pattern;
            continue;
        }
        const CodePoint character = characterOf(text);
        const std::size_t step = pattern.empty() ? 0 : matchStep(pattern, character.value);
        if (step != 0) {
            pattern.remove_prefix(step);
            text.remove_prefix(character.length);
        } else if (hasAny) {
            anyText.remove_prefix(characterOf(anyText).length);
            text = anyText;
            pattern = anyPattern;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('%') == std::string_view::npos;
}

}  // namespace cimhost
