#include "platform/logger/LogFormat.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t widthLimit = 1024;

/// One conversion of a format, taken apart.
struct Conversion {
    /// From the per cent sign to the letter.
    std::string_view text;
    std::string flags;
    bool left = false;
    std::size_t width = 0;
    std::optional<std::size_t> precision;
    /// What h (16) and hh (8) leave of an integer.
    unsigned bits = 64;
    char letter = '\0';
};

constexpr bool isOneOf(char character, std::string_view set) noexcept {
    return set.find(character) != std::string_view::npos;
}

constexpr bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

std::int64_t signExtended(std::uint64_t value, unsigned bits) noexcept {
    unsigned const unused = 64 - bits;
    return static_cast<std::int64_t>(value << unused) >> unused;
}

std::uint64_t zeroExtended(std::uint64_t value, unsigned bits) noexcept {
    unsigned const unused = 64 - bits;
    return value << unused >> unused;
}

/// Puts arguments into one format. The format is read once, from left to right.
class Formatter {
public:
    Formatter(std::string_view format, std::span<LogArgument const> arguments) noexcept
        : _rest(format), _arguments(arguments) {}

    std::string run() {
        while (!_rest.empty()) {
            std::size_t const plain = std::min(_rest.find('%'), _rest.size());
            _result.append(_rest.substr(0, plain));
            _rest.remove_prefix(plain);
            if (!_rest.empty()) _convert();
        }
        return std::move(_result);
    }

private:
    /// At a per cent sign: prints the conversion that starts there.
    void _convert() {
        std::size_t const argumentsBefore = _next;
        std::optional<Conversion> const conversion = _parse();
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

    void _print(Conversion const& conversion) {
        if (conversion.letter == '%') {
            _result += '%';
        } else if (conversion.letter != 'n') {
            LogArgument const* const argument = _take();
            if (!argument || !_printArgument(conversion, *argument)) {
                _result.append(conversion.text);
            }
        }
    }

    /// The conversion at the start of the rest, or nothing when it is not one that we know.
    std::optional<Conversion> _parse() {
        Conversion conversion;
        std::size_t at = 1;
        for (; isOneOf(_at(at), "-+ #0"); ++at) {
            conversion.left |= _at(at) == '-';
            if (conversion.flags.find(_at(at)) == std::string::npos) conversion.flags += _at(at);
        }
        if (!_parseWidth(conversion, at) || !_parsePrecision(conversion, at)) return std::nullopt;
        if (_at(at) == 'h') conversion.bits = _at(at + 1) == 'h' ? 8 : 16;
        while (isOneOf(_at(at), "hlLqjzt")) ++at;
        conversion.letter = _at(at);
        bool const known =
            conversion.letter == '%' ? at == 1 : isOneOf(conversion.letter, "diouxXcspneEfFgGaA");
        if (!known) return std::nullopt;
        // The alternative form of a decimal number is undefined in C.
        if (isOneOf(conversion.letter, "diu")) std::erase(conversion.flags, '#');
        conversion.text = _rest.substr(0, at + 1);
        return conversion;
    }

    bool _parseWidth(Conversion& conversion, std::size_t& at) noexcept {
        std::optional<std::int64_t> const width = _parseNumber(at);
        if (!width) return false;
        if (*width < 0) conversion.left = true;
        conversion.width =
            std::min(static_cast<std::size_t>(*width < 0 ? -*width : *width), widthLimit);
        return true;
    }

    bool _parsePrecision(Conversion& conversion, std::size_t& at) noexcept {
        if (_at(at) != '.') return true;
        std::optional<std::int64_t> const precision = _parseNumber(++at);
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
            LogArgument const* const argument = _take();
            if (!argument || argument->kind() != LogArgument::Kind::integer) return std::nullopt;
            return signExtended(argument->integer(), 32);
        }
        constexpr std::int64_t enough = 1'000'000'000;
        std::int64_t number = 0;
        for (; isDigit(_at(at)); ++at) number = std::min(number * 10 + (_at(at) - '0'), enough);
        return number;
    }

    /// False when the argument is not of the type that the conversion wants.
    bool _printArgument(Conversion const& conversion, LogArgument const& argument) {
        using Kind = LogArgument::Kind;
        switch (argument.kind()) {
            case Kind::integer:
                return _printInteger(conversion, argument);
            case Kind::floating:
                return _printFloating(conversion, argument.floating());
            case Kind::zeroTerminatedText:
                if (conversion.letter == 'p') return _printAddress(conversion, argument.address());
                return _printZeroTerminated(conversion, argument.characters());
            case Kind::text:
                return _printText(conversion, argument.text());
            case Kind::pointer:
                if (conversion.letter == 's' && !argument.address()) {
                    return _printZeroTerminated(conversion, nullptr);
                }
                return _printAddress(conversion, argument.address());
        }
        return false;
    }

    bool _printInteger(Conversion const& conversion, LogArgument const& argument) {
        unsigned const bits = std::min(conversion.bits, argument.bits());
        if (conversion.letter == 'c') {
            _pad(conversion, std::string(1, static_cast<char>(argument.integer())));
            return true;
        }
        if (isOneOf(conversion.letter, "di")) {
            return _printNumber(conversion, "j",
                                std::intmax_t{signExtended(argument.integer(), bits)});
        }
        if (isOneOf(conversion.letter, "ouxX")) {
            return _printNumber(conversion, "j",
                                std::uintmax_t{zeroExtended(argument.integer(), bits)});
        }
        return false;
    }

    bool _printFloating(Conversion const& conversion, double value) {
        return isOneOf(conversion.letter, "eEfFgGaA") && _printNumber(conversion, "", value);
    }

    bool _printZeroTerminated(Conversion const& conversion, char const* text) {
        if (!text) return _printText(conversion, "(null)");
        // The text need not end in a zero where the precision stops short of it.
        std::size_t const size =
            conversion.precision ? ::strnlen(text, *conversion.precision) : std::strlen(text);
        return _printText(conversion, {text, size});
    }

    bool _printText(Conversion const& conversion, std::string_view text) {
        if (conversion.letter != 's') return false;
        _pad(conversion, text.substr(0, conversion.precision.value_or(text.size())));
        return true;
    }

    bool _printAddress(Conversion const& conversion, void const* address) {
        if (conversion.letter != 'p') return false;
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%p", address);
        _pad(conversion, text.data());
        return true;
    }

    /// Has the C library print a number, from a conversion put together here of checked pieces.
    template <typename Number>
    bool _printNumber(Conversion const& conversion, char const* modifier, Number number) {
        std::string const own = "%" + conversion.flags + "*.*" + modifier + conversion.letter;
        int const width = static_cast<int>(conversion.width) * (conversion.left ? -1 : 1);
        int const precision = conversion.precision
                                  ? static_cast<int>(std::min(*conversion.precision, widthLimit))
                                  : -1;
        // Room for the longest double, 309 digits, its point and its sign beside the precision.
        std::array<char, widthLimit + 512> text;
        int const size =
            std::snprintf(text.data(), text.size(), own.c_str(), width, precision, number);
        if (size < 0 || static_cast<std::size_t>(size) >= text.size()) return false;
        _result.append(text.data(), static_cast<std::size_t>(size));
        return true;
    }

    void _pad(Conversion const& conversion, std::string_view text) {
        std::size_t const blanks = conversion.width - std::min(conversion.width, text.size());
        if (!conversion.left) _result.append(blanks, ' ');
        _result.append(text);
        if (conversion.left) _result.append(blanks, ' ');
    }

    LogArgument const* _take() noexcept {
        return _next < _arguments.size() ? &_arguments[_next++] : nullptr;
    }

    /// A character of the rest; a zero past its end.
    char _at(std::size_t index) const noexcept {
        return index < _rest.size() ? _rest[index] : '\0';
    }

    std::string_view _rest;
    std::span<LogArgument const> _arguments;
    std::size_t _next = 0;
    std::string _result;
};

}  // namespace

std::string formatLogText(char const* format, std::span<LogArgument const> arguments) {
    return Formatter(format ? format : "(null)", arguments).run();
}
