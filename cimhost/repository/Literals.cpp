#include "cimhost/repository/Literals.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/Utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace cimhost {
namespace {

bool isDigit(char character) noexcept { return character >= '0' && character <= '9'; }

bool isSign(char character) noexcept { return character == '+' || character == '-'; }

bool takeSign(std::string_view& text) noexcept {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    return isNegative;
}

// The whole of the text, not empty.
template <typename Number, typename... Base>
std::errc readWhole(std::string_view text, Number& number, Base... base) noexcept {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base...);
    return stop == end ? error : std::errc::invalid_argument;
}

int takeBase(std::string_view& text, IntegerForms forms) noexcept {
    if (forms == IntegerForms::decimal) return 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        return 16;
    }
    if (forms == IntegerForms::hexadecimal) return 10;
    if (text.ends_with('b') || text.ends_with('B')) {
        text.remove_suffix(1);
        return 2;
    }
    if (text.size() == 1 || !text.starts_with('0')) return 10;
    text.remove_prefix(1);
    return 8;
}

struct EscapeRow {
    char letter;
    char character;
};

constexpr auto escapeRows = std::to_array<EscapeRow>({
    {'b', '\b'},
    {'t', '\t'},
    {'n', '\n'},
    {'f', '\f'},
    {'r', '\r'},
    {'"', '"'},
    {'\'', '\''},
    {'\\', '\\'},
});

bool isControl(char character) noexcept { return static_cast<unsigned char>(character) < ' '; }

void checkPlain(std::string_view text, std::size_t place, std::size_t length) {
    const std::string_view plain = text.substr(place, length);
    for (std::size_t i = 0; i < plain.size(); ++i) {
        if (isControl(plain[i]) && plain[i] != '\t') {
            throw LiteralError(place + i, "a control character must be escaped");
        }
    }
    const std::size_t invalid = findInvalidUtf8(plain);
    if (invalid != std::string_view::npos) {
        throw LiteralError(place + invalid, "the text is not UTF-8");
    }
}

// The place is at the backslash, and moves behind the escape.
char32_t readMofEscape(std::string_view text, std::size_t& place) {
    const std::string_view rest = text.substr(place + 1);
    if (rest.starts_with('x') || rest.starts_with('X')) {
        const std::string_view digits = rest.substr(1, 4);
        unsigned unit = 0;
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
        if (result.ec != std::errc()) {
            throw LiteralError(place, "expected a hexadecimal digit after '\\x'");
        }
        place += 2 + static_cast<std::size_t>(result.ptr - digits.data());
        return unit;
    }
    const auto* const row = std::ranges::find_if(
        escapeRows, [&](const EscapeRow& each) { return rest.starts_with(each.letter); });
    if (row == escapeRows.end()) throw LiteralError(place, "an unknown escape");
    place += 2;
    return static_cast<unsigned char>(row->character);
}

// As a code point: two surrogates in a row are one.
char32_t readMofCharacter(std::string_view text, std::size_t& place) {
    const auto isHigh = [](char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; };
    const auto isLow = [](char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; };
    const std::size_t start = place;
    const char32_t unit = readMofEscape(text, place);
    if (unit == 0) throw LiteralError(start, "a string must not hold the character U+0000");
    if (isLow(unit)) throw LiteralError(start, "a low surrogate without a high one before it");
    if (!isHigh(unit)) return unit;
    const char32_t low = text.substr(place).starts_with('\\') ? readMofEscape(text, place) : 0;
    if (!isLow(low)) throw LiteralError(start, "a high surrogate without a low one after it");
    return 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
}

bool isQuote(char character) noexcept { return character == '"' || character == '\''; }

// The place is at the backslash, with a character behind it.
void appendEscape(std::string_view text, Escapes escapes, std::size_t& place, std::string& result) {
    if (escapes == Escapes::mof) return appendUtf8(result, readMofCharacter(text, place));
    const char next = text[place + 1];
    const bool isPair = escapes == Escapes::backslash || next == '\\' || isQuote(next);
    result += isPair ? next : '\\';
    place += isPair ? 2 : 1;
}

// Four digits, so that whatever follows is none.
std::string unitEscape(std::uint64_t unit) {
    constexpr std::string_view digits = "0123456789abcdef";
    return {'\\',
            'x',
            digits[unit >> 12U & 15U],
            digits[unit >> 8U & 15U],
            digits[unit >> 4U & 15U],
            digits[unit & 15U]};
}

void appendControl(char character, std::string& result) {
    const auto* const row = std::ranges::find(escapeRows, character, &EscapeRow::character);
    if (row == escapeRows.end()) {
        result += unitEscape(static_cast<unsigned char>(character));
    } else {
        (result += '\\') += row->letter;
    }
}

void requireMofText(std::string_view text) {
    if (text.find('\0') != std::string_view::npos) {
        throw CimError(CimCode::failed, "a string of MOF cannot hold the character U+0000");
    }
    if (findInvalidUtf8(text) != std::string_view::npos) {
        throw CimError(CimCode::failed, "a string of MOF cannot hold bytes that are not UTF-8");
    }
}

}  // namespace

std::errc readInteger(std::string_view text, IntegerForms forms, Value& value) noexcept {
    const bool isNegative = takeSign(text);
    const int base = takeBase(text, forms);
    std::uint64_t number = 0;
    if (const std::errc error = readWhole(text, number, base); error != std::errc()) return error;
    if (!isNegative || number == 0) {
        value = Value::unsignedInteger(CimType::uint64, number);
        return {};
    }
    constexpr std::uint64_t lowestMagnitude = std::uint64_t{1} << 63U;
    if (number > lowestMagnitude) return std::errc::result_out_of_range;
    value = Value::signedInteger(CimType::sint64, static_cast<std::int64_t>(~number + 1));
    return {};
}

std::errc readReal(std::string_view text, CimType type, Value& value) noexcept {
    const bool isNegative = takeSign(text);
    // from_chars knows words such as "inf" too; a literal begins with a digit or a point.
    if (text.empty() || (!isDigit(text.front()) && text.front() != '.')) {
        return std::errc::invalid_argument;
    }
    float single = 0;
    double number = 0;
    const bool isSingle = type == CimType::real32;
    const std::errc error = isSingle ? readWhole(text, single) : readWhole(text, number);
    if (error != std::errc()) return error;
    if (isSingle) number = single;
    value = Value(type, isNegative ? -number : number);
    return {};
}

std::optional<Value> readNumber(std::string_view text) noexcept {
    Value value;
    const bool isNumber = readInteger(text, IntegerForms::decimal, value) == std::errc() ||
                          readReal(text, CimType::real64, value) == std::errc();
    return isNumber ? std::optional(value) : std::nullopt;
}

std::optional<Value> readBoolean(std::string_view text) noexcept {
    if (equalNames(text, "true")) return Value::boolean(true);
    if (equalNames(text, "false")) return Value::boolean(false);
    return std::nullopt;
}

std::optional<Value> readCharacter(std::string_view text) noexcept {
    const std::optional<CodePoint> character = firstCodePoint(text);
    if (!character || character->length != text.size() || character->value > 0xFFFF) {
        return std::nullopt;
    }
    return Value::unsignedInteger(CimType::char16, character->value);
}

bool beginsNumber(std::string_view text) noexcept {
    takeSign(text);
    if (text.starts_with('.')) text.remove_prefix(1);
    return !text.empty() && isDigit(text.front());
}

std::size_t numberLength(std::string_view text, bool wholeExponents) noexcept {
    std::size_t length = isSign(text.front()) ? 1 : 0;
    bool hasExponents = wholeExponents;
    for (; length < text.size(); ++length) {
        const char character = text[length];
        hasExponents = hasExponents || character == '.';
        const bool isExponentSign = hasExponents && isSign(character) &&
                                    (text[length - 1] == 'e' || text[length - 1] == 'E');
        if (character != '.' && !isExponentSign && !isDigit(character) &&
            findNameEnd(text.substr(length, 1)) == 0) {
            break;
        }
    }
    return length;
}

std::size_t readQuoted(std::string_view text, Escapes escapes, std::string& result) {
    const char quote = text.front();
    std::size_t place = 1;
    for (;;) {
        const auto rest = text.substr(place);
        const auto* const found = std::ranges::find_if(
            rest, [quote](char character) { return character == quote || character == '\\'; });
        if (found == rest.end()) return std::string_view::npos;
        const std::size_t stop = place + static_cast<std::size_t>(found - rest.begin());
        if (escapes == Escapes::mof) checkPlain(text, place, stop - place);
        result += text.substr(place, stop - place);
        place = stop;
        const bool isLast = stop + 1 == text.size();
        if (text[stop] == quote) {
            const bool isDoubled = escapes == Escapes::quotes && !isLast && text[stop + 1] == quote;
            if (!isDoubled) return stop + 1;
            result += quote;
            place += 2;
        } else if (isLast) {
            return std::string_view::npos;
        } else {
            appendEscape(text, escapes, place, result);
        }
    }
}

char32_t readMofUnit(std::string_view text, std::size_t& place) {
    if (text.substr(place).starts_with('\\')) return readMofEscape(text, place);
    const std::optional<CodePoint> character = firstCodePoint(text.substr(place));
    if (!character) throw LiteralError(place, "the text is not UTF-8");
    checkPlain(text, place, character->length);
    place += character->length;
    return character->value;
}

std::string quoted(std::string_view text, char quote, Escapes escapes) {
    const bool isMof = escapes == Escapes::mof;
    if (isMof) requireMofText(text);
    std::string result(1, quote);
    result.reserve(text.size() + 2);
    for (const char character : text) {
        if (character == quote || character == '\\') {
            (result += '\\') += character;
        } else if (isMof && isControl(character)) {
            appendControl(character, result);
        } else {
            result += character;
        }
    }
    return result += quote;
}

std::optional<std::string> characterText(std::uint64_t code) {
    if (code > 0xFFFF || (code >= 0xD800 && code <= 0xDFFF)) return std::nullopt;
    std::string text;
    appendUtf8(text, static_cast<char32_t>(code));
    return text;
}

std::string characterLiteral(std::uint64_t code, Escapes escapes) {
    const std::optional<std::string> text = characterText(code);
    if (!text || (escapes == Escapes::mof && code == 0)) return "'" + unitEscape(code) + "'";
    return quoted(*text, '\'', escapes);
}

std::string_view realText(double number, CimType type, NumberScratch& scratch) noexcept {
    char* const begin = scratch.data();
    char* const end = begin + scratch.size() - 2;
    char* stop = type == CimType::real32 ? std::to_chars(begin, end, static_cast<float>(number)).ptr
                                         : std::to_chars(begin, end, number).ptr;
    if (std::isfinite(number) && std::find(begin, stop, '.') == stop) {
        char* const exponent = std::find(begin, stop, 'e');
        std::copy_backward(exponent, stop, stop + 2);
        std::copy_n(".0", 2, exponent);
        stop += 2;
    }
    return {begin, static_cast<std::size_t>(stop - begin)};
}

}  // namespace cimhost
