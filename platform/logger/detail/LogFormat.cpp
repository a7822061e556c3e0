#include "platform/logger/detail/LogFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t widthLimit = 1024;

/// Room for most lines, so that their making allocates once.
constexpr std::size_t usualLine = 240;

/// One conversion of a format, taken apart.
struct Conversion {
    /// From the per cent sign to the letter.
    std::string_view text;
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternative = false;
    bool zeros = false;
    std::size_t width = 0;
    std::optional<std::size_t> precision;
    /// What h (16) and hh (8) leave of an integer.
    unsigned bits = 64;
    char letter = '\0';
};

constexpr bool isOneOf(char character, std::string_view set) noexcept {
    return std::any_of(set.begin(), set.end(), [&](char member) { return member == character; });
}

constexpr bool isDigit(char character) noexcept { return character >= '0' && character <= '9'; }

constexpr char upperDigit(char digit) noexcept {
    return isDigit(digit) ? digit : static_cast<char>(digit - 'a' + 'A');
}

std::int64_t signExtended(std::uint64_t value, unsigned bits) noexcept {
    const unsigned unused = 64 - bits;
    return static_cast<std::int64_t>(value << unused) >> unused;
}

std::uint64_t zeroExtended(std::uint64_t value, unsigned bits) noexcept {
    const unsigned unused = 64 - bits;
    return value << unused >> unused;
}

/// Puts arguments into one format. The format is read once, from left to right.
class Formatter {
public:
    Formatter(std::string_view format, std::span<const LogArgument> arguments) noexcept
        : _rest(format), _arguments(arguments) {}

    std::string run() {
        _result.reserve(usualLine);
        while (!_rest.empty()) {
            const std::size_t plain = std::min(_rest.find('%'), _rest.size());
            _result.append(_rest.substr(0, plain));
            _rest.remove_prefix(plain);
            if (!_rest.empty() && !_convertPlain()) _convert();
        }
        return std::move(_result);
    }

private:
    /// At a per cent sign: prints %s or %d as most lines have them, without flags and the like and
    /// with an argument of their type. False for anything else.
    bool _convertPlain() {
        using Kind = LogArgument::Kind;
        if (_next == _arguments.size()) return false;
        const LogArgument& argument = _arguments[_next];
        const char letter = _at(1);
        if (letter == 's' && argument.kind() == Kind::text) {
            _result.append(argument.text());
        } else if (letter == 's' && argument.kind() == Kind::zeroTerminatedText &&
                   argument.characters()) {
            _result.append(argument.characters());
        } else if (letter == 'd' && argument.kind() == Kind::integer) {
            _appendDecimal(signExtended(argument.integer(), argument.bits()));
        } else {
            return false;
        }
        ++_next;
        _rest.remove_prefix(2);
        return true;
    }

    void _appendDecimal(std::int64_t value) {
        std::array<char, 20> text;  // a sign and 19 digits
        const char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
        _result.append(text.data(), static_cast<std::size_t>(end - text.data()));
    }

    /// At a per cent sign: prints the conversion that starts there.
    void _convert() {
        const std::size_t argumentsBefore = _next;
        const std::optional<Conversion> conversion = _parse();
        if (!conversion) {
            // Unknown: the sign stands for itself, and so does what follows it.
            _next = argumentsBefore;
            _result += '%';
            _rest.remove_prefix(1);
            return;
        }
        _rest.remove_prefix(conversion->text.size());
        _print(*conversion);
    }

    void _print(const Conversion& conversion) {
        if (conversion.letter == '%') {
            _result += '%';
        } else if (conversion.letter != 'n') {
            const LogArgument* const argument = _take();
            if (!argument || !_printArgument(conversion, *argument)) {
                _result.append(conversion.text);
            }
        }
    }

    /// The conversion at the start of the rest, or nothing when it is not one that we know.
    std::optional<Conversion> _parse() {
        Conversion conversion;
        std::size_t at = 1;
        while (_parseFlag(conversion, _at(at))) ++at;
        if (!_parseWidth(conversion, at) || !_parsePrecision(conversion, at)) return std::nullopt;
        if (_at(at) == 'h') conversion.bits = _at(at + 1) == 'h' ? 8 : 16;
        while (isOneOf(_at(at), "hlLqjzt")) ++at;
        conversion.letter = _at(at);
        const bool known =
            conversion.letter == '%' ? at == 1 : isOneOf(conversion.letter, "sdiuxXocpfFeEgGaAn");
        if (!known) return std::nullopt;
        conversion.text = _rest.substr(0, at + 1);
        return conversion;
    }

    static bool _parseFlag(Conversion& conversion, char flag) noexcept {
        switch (flag) {
            case '-': return conversion.left = true;
            case '+': return conversion.plus = true;
            case ' ': return conversion.blank = true;
            case '#': return conversion.alternative = true;
            case '0': return conversion.zeros = true;
            default: return false;
        }
    }

    bool _parseWidth(Conversion& conversion, std::size_t& at) noexcept {
        const std::optional<std::int64_t> width = _parseNumber(at);
        if (!width) return false;
        if (*width < 0) conversion.left = true;
        conversion.width =
            std::min(static_cast<std::size_t>(*width < 0 ? -*width : *width), widthLimit);
        return true;
    }

    bool _parsePrecision(Conversion& conversion, std::size_t& at) noexcept {
        if (_at(at) != '.') return true;
        const std::optional<std::int64_t> precision = _parseNumber(++at);
        if (!precision) return false;
        // A negative precision counts as none, as in C.
        if (*precision >= 0) conversion.precision = static_cast<std::size_t>(*precision);
        return true;
    }

    /// Digits, none of them being 0, or a star that takes an integer; nothing when the star finds
    /// none.
    std::optional<std::int64_t> _parseNumber(std::size_t& at) noexcept {
        if (_at(at) == '*') {
            ++at;
            const LogArgument* const argument = _take();
            if (!argument || argument->kind() != LogArgument::Kind::integer) return std::nullopt;
            return signExtended(argument->integer(), 32);
        }
        constexpr std::int64_t enough = 1'000'000'000;
        std::int64_t number = 0;
        for (; isDigit(_at(at)); ++at) number = std::min(number * 10 + (_at(at) - '0'), enough);
        return number;
    }

    /// False when the argument is not of the type that the conversion wants.
    bool _printArgument(const Conversion& conversion, const LogArgument& argument) {
        using Kind = LogArgument::Kind;
        switch (argument.kind()) {
            case Kind::integer: return _printInteger(conversion, argument);
            case Kind::floating: return _printFloating(conversion, argument.floating());
            case Kind::zeroTerminatedText:
                if (conversion.letter == 'p') return _printAddress(conversion, argument.address());
                return _printZeroTerminated(conversion, argument.characters());
            case Kind::text: return _printText(conversion, argument.text());
            case Kind::pointer:
                if (conversion.letter == 's' && !argument.address()) {
                    return _printZeroTerminated(conversion, nullptr);
                }
                return _printAddress(conversion, argument.address());
        }
        return false;
    }

    bool _printInteger(const Conversion& conversion, const LogArgument& argument) {
        const unsigned bits = std::min(conversion.bits, argument.bits());
        switch (conversion.letter) {
            case 'c': {
                const char character = static_cast<char>(argument.integer());
                _pad(conversion, {&character, 1});
                return true;
            }
            case 'd':
            case 'i': _printSigned(conversion, signExtended(argument.integer(), bits)); return true;
            case 'u':
                _printDigits(conversion, "", zeroExtended(argument.integer(), bits), 10);
                return true;
            case 'o':
                _printDigits(conversion, "", zeroExtended(argument.integer(), bits), 8);
                return true;
            case 'x':
            case 'X':
                _printHexadecimal(conversion, zeroExtended(argument.integer(), bits));
                return true;
            default: return false;
        }
    }

    void _printSigned(const Conversion& conversion, std::int64_t value) {
        const auto magnitude = static_cast<std::uint64_t>(value);
        _printDigits(conversion, _signOf(conversion, value), value < 0 ? 0 - magnitude : magnitude,
                     10);
    }

    static std::string_view _signOf(const Conversion& conversion, std::int64_t value) noexcept {
        if (value < 0) return "-";
        if (conversion.plus) return "+";
        return conversion.blank ? " " : "";
    }

    void _printHexadecimal(const Conversion& conversion, std::uint64_t value) {
        const bool upper = conversion.letter == 'X';
        const bool prefixed = conversion.alternative && value != 0;
        _printDigits(conversion, !prefixed ? "" : upper ? "0X" : "0x", value, 16);
    }

    /// A number with its sign or prefix; zeros of a precision or of the flag stand between them.
    void _printDigits(const Conversion& conversion, std::string_view prefix, std::uint64_t value,
                      int base) {
        std::array<char, 24> text;  // 22 octal digits and the zero of their alternative form
        char* first = text.data() + 1;
        char* last = std::to_chars(first, text.data() + text.size(), value, base).ptr;
        if (value == 0 && conversion.precision == 0U) last = first;
        if (base == 8 && conversion.alternative && (first == last || *first != '0')) *--first = '0';
        if (conversion.letter == 'X') std::transform(first, last, first, upperDigit);
        const std::string_view digits(first, static_cast<std::size_t>(last - first));

        const std::size_t least = _leastDigits(conversion, prefix.size());
        const std::size_t zeros = least - std::min(least, digits.size());
        const std::size_t size = prefix.size() + zeros + digits.size();
        const std::size_t blanks = conversion.width - std::min(conversion.width, size);
        if (!conversion.left) _result.append(blanks, ' ');
        _result.append(prefix).append(zeros, '0').append(digits);
        if (conversion.left) _result.append(blanks, ' ');
    }

    /// How many digits a number has at least. A precision turns the flag off, as in C.
    static std::size_t _leastDigits(const Conversion& conversion, std::size_t prefix) noexcept {
        if (conversion.precision) return std::min(*conversion.precision, widthLimit);
        const bool filled = conversion.zeros && !conversion.left;
        return filled ? conversion.width - std::min(conversion.width, prefix) : 0;
    }

    /// Has the C library print a number, from a conversion put together here of checked pieces.
    bool _printFloating(const Conversion& conversion, double value) {
        if (!isOneOf(conversion.letter, "eEfFgGaA")) return false;
        std::string own = "%";
        if (conversion.plus) own += '+';
        if (conversion.blank) own += ' ';
        if (conversion.alternative) own += '#';
        if (conversion.zeros) own += '0';
        own.append("*.*").append(1, conversion.letter);
        const int width = static_cast<int>(conversion.width) * (conversion.left ? -1 : 1);
        const int precision = conversion.precision
                                  ? static_cast<int>(std::min(*conversion.precision, widthLimit))
                                  : -1;
        // Room for the longest double, 309 digits, its point and its sign beside the precision.
        std::array<char, widthLimit + 512> text;
        const int size =
            std::snprintf(text.data(), text.size(), own.c_str(), width, precision, value);
        if (size < 0 || static_cast<std::size_t>(size) >= text.size()) return false;
        _result.append(text.data(), static_cast<std::size_t>(size));
        return true;
    }

    bool _printZeroTerminated(const Conversion& conversion, const char* text) {
        if (!text) return _printText(conversion, "(null)");
        // The text need not end in a zero where the precision stops short of it.
        const std::size_t size =
            conversion.precision ? ::strnlen(text, *conversion.precision) : std::strlen(text);
        return _printText(conversion, {text, size});
    }

    bool _printText(const Conversion& conversion, std::string_view text) {
        if (conversion.letter != 's') return false;
        _pad(conversion, text.substr(0, conversion.precision.value_or(text.size())));
        return true;
    }

    bool _printAddress(const Conversion& conversion, const void* address) {
        if (conversion.letter != 'p') return false;
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%p", address);
        _pad(conversion, text.data());
        return true;
    }

    void _pad(const Conversion& conversion, std::string_view text) {
        const std::size_t blanks = conversion.width - std::min(conversion.width, text.size());
        if (!conversion.left) _result.append(blanks, ' ');
        _result.append(text);
        if (conversion.left) _result.append(blanks, ' ');
    }

    const LogArgument* _take() noexcept {
        return _next < _arguments.size() ? &_arguments[_next++] : nullptr;
    }

    /// A character of the rest; a zero past its end.
    char _at(std::size_t index) const noexcept {
        return index < _rest.size() ? _rest[index] : '\0';
    }

    std::string_view _rest;
    std::span<const LogArgument> _arguments;
    std::size_t _next = 0;
    std::string _result;
};

}  // namespace

std::string formatLogText(const char* format, std::span<const LogArgument> arguments) {
    return Formatter(format ? format : "(null)", arguments).run();
}
