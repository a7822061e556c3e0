#include "cimhost/mof/MofLiterals.h"

#include "cimhost/repository/Utf8.h"

#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace cimhost {
namespace {

[[noreturn]] void refuseNumber(const MofToken& token) {
    failAt(token.position, describe(token) + " is not a number");
}

[[noreturn]] void refuseSize(const MofToken& token) {
    failAt(token.position, describe(token) + " does not fit into 64 bits");
}

struct Digits {
    std::string_view text;
    int base = 10;
};

Digits digitsOf(std::string_view text) noexcept {
    if (text.starts_with("0x") || text.starts_with("0X")) return {text.substr(2), 16};
    if (text.ends_with('b') || text.ends_with('B')) return {text.substr(0, text.size() - 1), 2};
    if (text.size() > 1 && text.starts_with('0')) return {text.substr(1), 8};
    return {text, 10};
}

Value realOf(const MofToken& token, std::string_view text, bool negative) {
    // The digits behind the point are the ones that must be there.
    const std::size_t point = text.find('.');
    const bool hasFraction =
        point + 1 < text.size() && text[point + 1] >= '0' && text[point + 1] <= '9';
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (!hasFraction || result.ptr != end) refuseNumber(token);
    if (result.ec != std::errc()) refuseSize(token);
    return Value(CimType::real64, negative ? -number : number);
}

Value integerOf(const MofToken& token, std::string_view text, bool negative) {
    const Digits digits = digitsOf(text);
    std::uint64_t number = 0;
    const char* const end = digits.text.data() + digits.text.size();
    const auto result = std::from_chars(digits.text.data(), end, number, digits.base);
    if (digits.text.empty() || result.ptr != end) refuseNumber(token);
    if (result.ec != std::errc()) refuseSize(token);
    if (!negative || number == 0) return Value::unsignedInteger(CimType::uint64, number);
    constexpr std::uint64_t lowestMagnitude = std::uint64_t{1} << 63U;
    if (number > lowestMagnitude) refuseSize(token);
    return Value::signedInteger(CimType::sint64, static_cast<std::int64_t>(~number + 1));
}

bool isHighSurrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Walks over what stands between the quotes of a token, one character or escape at a time.
class QuotedReader {
public:
    explicit QuotedReader(const MofToken& token) : _token(token), _end(token.text.size() - 1) {}

    bool atEnd() const noexcept { return _place == _end; }

    /// The characters up to the next escape or the end, checked to be text.
    std::string_view takePlain() {
        const std::string_view rest = _rest();
        const std::string_view plain = rest.substr(0, rest.find('\\'));
        _checkPlain(plain);
        _place += plain.size();
        return plain;
    }

    /// A character or an escape, as a code unit where an escape says so.
    char32_t takeUnit() {
        if (_rest().starts_with('\\')) return _escape();
        const auto character = firstCodePoint(_rest());
        if (!character) _fail(_place, "the text is not UTF-8");
        _checkPlain(_rest().substr(0, character->length));
        _place += character->length;
        return character->value;
    }

    /// An escape as a code point: two surrogates in a row are one.
    char32_t takeEscape() {
        const std::size_t start = _place;
        const char32_t unit = _escape();
        if (unit == 0) _fail(start, "a string must not hold the character U+0000");
        if (isLowSurrogate(unit)) _fail(start, "a low surrogate without a high one before it");
        if (!isHighSurrogate(unit)) return unit;
        const char32_t low = _rest().starts_with('\\') ? _escape() : 0;
        if (!isLowSurrogate(low)) _fail(start, "a high surrogate without a low one after it");
        return 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
    }

private:
    [[noreturn]] void _fail(std::size_t place, const char* message) const {
        failAt(positionIn(_token, place), message);
    }

    std::string_view _rest() const noexcept { return _token.text.substr(_place, _end - _place); }

    void _checkPlain(std::string_view plain) const {
        for (std::size_t i = 0; i < plain.size(); ++i) {
            const auto byte = static_cast<unsigned char>(plain[i]);
            if (byte < ' ' && byte != '\t') {
                _fail(_place + i, "a control character must be escaped");
            }
        }
        const std::size_t invalid = findInvalidUtf8(plain);
        if (invalid != std::string_view::npos) _fail(_place + invalid, "the text is not UTF-8");
    }

    char32_t _escape() {
        const char letter = _rest().size() < 2 ? '\0' : _rest()[1];
        if (letter == 'x' || letter == 'X') return _hexEscape();
        const char32_t unit = _simpleEscape(letter);
        _place += 2;
        return unit;
    }

    char32_t _simpleEscape(char letter) const {
        switch (letter) {
            case 'b':
                return '\b';
            case 't':
                return '\t';
            case 'n':
                return '\n';
            case 'f':
                return '\f';
            case 'r':
                return '\r';
            case '"':
                return '"';
            case '\'':
                return '\'';
            case '\\':
                return '\\';
            default:
                _fail(_place, "an unknown escape");
        }
    }

    char32_t _hexEscape() {
        const std::string_view digits = _rest().substr(2, 4);
        unsigned unit = 0;
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
        if (result.ec != std::errc()) _fail(_place, "expected a hexadecimal digit after '\\x'");
        _place += 2 + static_cast<std::size_t>(result.ptr - digits.data());
        return unit;
    }

    const MofToken& _token;
    std::size_t _place = 1;
    std::size_t _end;
};

}  // namespace

Value numberOf(const MofToken& token) {
    std::string_view text = token.text;
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    if (text.find('.') != std::string_view::npos) return realOf(token, text, negative);
    return integerOf(token, text, negative);
}

Value characterOf(const MofToken& token) {
    QuotedReader reader(token);
    if (reader.atEnd()) failAt(token.position, "expected a character between the apostrophes");
    const char32_t unit = reader.takeUnit();
    if (!reader.atEnd()) failAt(token.position, "more than one character between the apostrophes");
    if (unit > 0xFFFF) failAt(token.position, "the character does not fit into char16");
    return Value::unsignedInteger(CimType::char16, unit);
}

void appendString(const MofToken& token, std::string& text) {
    // The first literal is nearly always the only one, and its length is known.
    if (text.empty()) text.reserve(token.text.size());
    QuotedReader reader(token);
    while (!reader.atEnd()) {
        text += reader.takePlain();
        if (!reader.atEnd()) appendUtf8(text, reader.takeEscape());
    }
}

}  // namespace cimhost
