#include "common/entities.h"

#include "common/detail/EntityIndex.h"
#include "common/detail/NamedEntities.h"

#include <bit>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>  // strchrnul too, which is GNU's
#include <optional>

// A program may well have a function `cmp` of its own, and the loader would prefer it: so the
// exported functions are never called here, but what stands behind them.

namespace {

constexpr EntityIndex entityIndex;

constexpr std::uint64_t lastCodePoint = 0x10FFFF;

/// putc_utf8() of any number.
inline std::size_t putUtf8(std::uint64_t codePoint, char* to) noexcept {
    const auto tail = [codePoint](int shift) {
        return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        to[0] = static_cast<char>(codePoint);
        return 1;
    }
    if (codePoint < 0x800) {
        to[0] = static_cast<char>(0xC0 | (codePoint >> 6));
        to[1] = tail(0);
        return 2;
    }
    if (codePoint < 0x10000) {
        to[0] = static_cast<char>(0xE0 | (codePoint >> 12));
        to[1] = tail(6);
        to[2] = tail(0);
        return 3;
    }
    if (codePoint > lastCodePoint) return 0;
    to[0] = static_cast<char>(0xF0 | (codePoint >> 18));
    to[1] = tail(12);
    to[2] = tail(6);
    to[3] = tail(0);
    return 4;
}

int compareWithName(const void* key, const void* entry) noexcept {
    const char* const name = static_cast<const NamedEntity*>(entry)->name;
    return std::strncmp(static_cast<const char*>(key), name, std::strlen(name));
}

const char* findReplacement(const char* text) noexcept {
    const void* const row = std::bsearch(text, NAMED_ENTITIES.data(), NAMED_ENTITIES.size(),
                                         sizeof(NamedEntity), compareWithName);
    return row ? static_cast<const NamedEntity*>(row)->replacement : nullptr;
}

/// The value of a digit, or at least `base` for what is none.
template <unsigned base>
inline unsigned digitOf(char character) noexcept {
    const unsigned digit = static_cast<unsigned char>(character) - unsigned{'0'};
    if constexpr (base > 10) {
        const unsigned letter = (static_cast<unsigned char>(character) | 0x20U) - unsigned{'a'};
        if (digit > 9) return letter < base - 10 ? letter + 10 : base;
    }
    return digit;
}

/// The code point of the reference `&#...;` at `at`, by the grammar of strtoul(3); nothing unless
/// its number ends at `semicolon`.
[[gnu::cold, gnu::noinline]] std::optional<std::uint64_t> convertNumber(
    const char* at, const char* semicolon) noexcept {
    const bool isHexadecimal = at[2] == 'x' || at[2] == 'X';
    const int callersError = errno;
    errno = 0;
    char* end = nullptr;
    const std::uint64_t number =
        std::strtoul(at + (isHexadecimal ? 3 : 2), &end, isHexadecimal ? 16 : 10);
    const bool isValid = errno == 0 && end == semicolon && number <= lastCodePoint;
    errno = callersError;
    return isValid ? std::optional(number) : std::nullopt;
}

/// Moves text to where something was left out before it. Most pieces between references are shorter
/// than what a call of memmove takes.
inline char* moveText(char* to, const char* from, std::size_t size) noexcept {
    const auto moveEnds = [=]<typename Word>(Word first, Word last) {
        std::memcpy(&first, from, sizeof first);
        std::memcpy(&last, from + size - sizeof last, sizeof last);
        std::memcpy(to, &first, sizeof first);
        std::memcpy(to + size - sizeof last, &last, sizeof last);
    };
    if (to == from) return to + size;
    if (size > 16) {
        std::memmove(to, from, size);
    } else if (size >= 8) {
        moveEnds(std::uint64_t{}, std::uint64_t{});
    } else if (size >= 4) {
        moveEnds(std::uint32_t{}, std::uint32_t{});
    } else if (size >= 2) {
        moveEnds(std::uint16_t{}, std::uint16_t{});
    } else if (size == 1) {
        *to = *from;
    }
    return to + size;
}

/// Decodes one text from its first '&' on. Everything is inlined, which keeps the members in
/// registers: were the object handed to another function, each byte of the result might change
/// them.
class ReferenceDecoder {
public:
    ReferenceDecoder(const char* firstReference, char* to) noexcept
        : _from(firstReference), _to(to), _end(firstReference + std::strlen(firstReference)) {}

    /// The end of the result, where its closing zero belongs.
    char* decode() noexcept {
        while (_from != _end) {
            if (!_decodeReference()) {
                if (_nextSemicolon() == _end) break;  // and so no reference follows
                *_to++ = *_from++;
            }
            if (*_from != '&') _moveUpToReference();
        }
        return moveText(_to, _from, _rest());
    }

private:
    std::size_t _rest() const noexcept { return static_cast<std::size_t>(_end - _from); }

    void _moveUpToReference() noexcept {
        const void* const found = std::memchr(_from, '&', _rest());
        const char* const next = found ? static_cast<const char*>(found) : _end;
        _to = moveText(_to, _from, static_cast<std::size_t>(next - _from));
        _from = next;
    }

    /// The first semicolon after the '&' that was come to, or the end. Each is looked for once.
    const char* _nextSemicolon() noexcept {
        if (!_semicolon || _semicolon < _from) {
            const void* const found = std::memchr(_from, ';', _rest());
            _semicolon = found ? static_cast<const char*>(found) : _end;
        }
        return _semicolon;
    }

    /// Decodes the reference that _from stands at and goes behind it, or stays and says so.
    bool _decodeReference() noexcept {
        if (_from[1] != '#') return _decodeName();
        if (_from[2] == 'x' || _from[2] == 'X') return _decodeNumber<16>(_from + 3);
        return _decodeNumber<10>(_from + 2);
    }

    bool _decodeName() noexcept {
        constexpr std::uint64_t lows = 0x0101010101010101;
        std::uint64_t word = _loadName();
        const std::uint64_t different = word ^ (lows * ';');
        const std::uint64_t marks = (different - lows) & ~different & (lows << 7);
        std::size_t size = EntityIndex::longestName;
        if (marks != 0) {
            size = static_cast<std::size_t>(std::countr_zero(marks)) / 8;
            word &= (std::uint64_t{1} << (8 * size)) - 1;
        } else if (_rest() <= size + 1 || _from[size + 1] != ';') {
            return false;
        }
        const EntityIndex::Row* const row = entityIndex.find(word);
        if (!row) return false;
        // One to three bytes, without a branch for each size and no byte beyond them.
        _to[0] = row->utf8[0];
        _to[row->size / 2] = row->utf8[row->size / 2];
        _to[row->size - 1] = row->utf8[row->size - 1];
        _to += row->size;
        _from += size + 2;
        return true;
    }

    /// The eight bytes after the '&', the first one lowest; zeros after the end.
    std::uint64_t _loadName() const noexcept {
        constexpr std::size_t size = EntityIndex::longestName;
        if (_rest() <= size) return EntityIndex::wordOf({_from + 1, _rest() - 1});
        std::uint64_t word;
        std::memcpy(&word, _from + 1, size);
        if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
        return word;
    }

    template <unsigned base>
    bool _decodeNumber(const char* const digits) noexcept {
        constexpr int mostDigits = 10;  // with more the number may have wrapped round
        std::uint64_t number = 0;
        const char* at = digits;
        for (unsigned digit; (digit = digitOf<base>(*at)) < base; ++at) {
            number = number * base + digit;
        }
        if (*at == ';' && at - digits <= mostDigits) return _putNumber(number, at);
        return _mayBeOddNumber(digits, at) && _decodeOddNumber();
    }

    bool _putNumber(std::uint64_t number, const char* semicolon) noexcept {
        const std::size_t size = putUtf8(number, _to);
        if (size == 0) return false;
        _to += size;
        _from = semicolon + 1;
        return true;
    }

    /// Whether strtoul may take what is no short row of digits up to a semicolon: blanks and signs
    /// before the digits, a second "0x", or very many digits.
    static bool _mayBeOddNumber(const char* digits, const char* stop) noexcept {
        const auto next = static_cast<unsigned char>(*stop);
        if (stop == digits) return next == '+' || next == '-' || std::isspace(next) != 0;
        return next == 'x' || next == 'X' || next == ';';
    }

    bool _decodeOddNumber() noexcept {
        const char* const semicolon = _nextSemicolon();
        if (semicolon == _end) return false;
        const std::optional<std::uint64_t> number = convertNumber(_from, semicolon);
        return number && _putNumber(*number, semicolon);
    }

    const char* _from;
    char* _to;
    const char* _end;
    const char* _semicolon = nullptr;
};

}  // namespace

std::size_t remove_xml_reference_chars(char* source, char* destination) {
    char* const begin = destination ? destination : source;
    // Text without references costs this one pass.
    const char* const reference = strchrnul(source, '&');
    char* end = moveText(begin, source, static_cast<std::size_t>(reference - source));
    if (*reference != '\0') end = ReferenceDecoder(reference, end).decode();
    *end = '\0';
    return static_cast<std::size_t>(end - begin);
}

int parse_entity(const char* at, char** to, const char** from) {
    const char* const semicolon = std::strchr(at, ';');
    if (!semicolon) return 0;
    std::size_t size = 0;
    if (at[1] == '#') {
        const std::optional<std::uint64_t> number = convertNumber(at, semicolon);
        if (!number) return 0;
        size = putUtf8(*number, *to);
    } else {
        const char* const replacement = findReplacement(at + 1);
        if (!replacement) return 0;
        size = std::strlen(replacement);
        std::memcpy(*to, replacement, size);
    }
    *to += size;
    *from = semicolon + 1;
    return 1;
}

const char* get_named_entity(const char* text) { return findReplacement(text); }

std::size_t putc_utf8(std::uint64_t codePoint, char* buffer) { return putUtf8(codePoint, buffer); }

int cmp(const void* key, const void* entry) { return compareWithName(key, entry); }
