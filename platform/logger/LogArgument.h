#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

/// One argument of a printf-style log call, kept together with its type.
///
/// Borrows what it was made from: it lives no longer than the full expression of the log call.
class LogArgument {
public:
    /// What an argument is, and so which conversions print it.
    enum class Kind : std::uint8_t { integer, floating, zeroTerminatedText, text, pointer };

    /// Integers, characters, booleans and enumerations; those narrower than int widen to int, as in
    /// any variadic C call.
    template <typename Integer>
    requires(std::integral<Integer> || std::is_enum_v<Integer>) LogArgument(Integer value)
    noexcept : _kind(Kind::integer) {
        if constexpr (std::is_enum_v<Integer>) {
            _setInteger(+static_cast<std::underlying_type_t<Integer>>(value));
        } else {
            _setInteger(+value);
        }
    }
    /// Of any width, kept as a double.
    template <std::floating_point Floating>
    LogArgument(Floating value) noexcept
        : _kind(Kind::floating), _floating(static_cast<double>(value)) {}

    /// @{
    /// A zero-terminated text; it is read only up to the precision of its conversion. Null is
    /// allowed.
    LogArgument(const char* text) noexcept : _kind(Kind::zeroTerminatedText), _pointer(text) {}
    LogArgument(std::string_view text) noexcept
        : _kind(Kind::text), _size(text.size()), _pointer(text.data()) {}
    LogArgument(const std::string& text) noexcept : LogArgument(std::string_view(text)) {}
    /// @}

    /// @{
    /// Any other object pointer: an address to print, never followed.
    LogArgument(const void* address) noexcept : _kind(Kind::pointer), _pointer(address) {}
    LogArgument(std::nullptr_t) noexcept : _kind(Kind::pointer), _pointer(nullptr) {}
    /// @}

    /// Says which of the readers below may be called.
    Kind kind() const noexcept { return _kind; }

    /// Of an integer: its value, sign-extended if its type is signed.
    std::uint64_t integer() const noexcept { return _integer; }
    /// Of an integer: 32 or 64.
    unsigned bits() const noexcept { return static_cast<unsigned>(_size); }
    /// Of a floating-point value.
    double floating() const noexcept { return _floating; }
    /// Of a text that is not zero-terminated.
    std::string_view text() const noexcept { return {characters(), _size}; }
    /// Of a zero-terminated text; may be null.
    const char* characters() const noexcept { return static_cast<const char*>(_pointer); }
    /// Of a text or a pointer.
    const void* address() const noexcept { return _pointer; }

private:
    template <std::integral Promoted>
    void _setInteger(Promoted value) noexcept {
        static_assert(sizeof(Promoted) <= sizeof(std::uint64_t));
        _integer = static_cast<std::uint64_t>(value);
        _size = sizeof(Promoted) * 8;
    }

    Kind _kind;
    std::size_t _size = 0;
    union {
        std::uint64_t _integer;
        double _floating;
        const void* _pointer;
    };
};
