#include "common/detail/WordReader.h"

#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace PYL {

namespace {

/// White space of the C locale: what the store's files are separated with, whatever locale the
/// object manager runs in.
constexpr bool isSpace(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// How many of these eight bytes come before the first that is a blank or below it, where all white
/// space is. Counts on from the lowest byte, so not for big-endian machines.
std::size_t plainBytes(const char* bytes) noexcept {
    constexpr std::uint64_t each = 0x0101010101010101;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    const auto low = (word - each * (' ' + 1)) & ~word & (each * 0x80);
    return static_cast<std::size_t>(std::countr_zero(low)) / 8;
}

/// The first place from this one on that is white space, or the end.
std::size_t wordEnd(const char* text, std::size_t at, std::size_t end) noexcept {
    while (std::endian::native == std::endian::little && end - at >= 8) {
        const auto plain = plainBytes(text + at);
        at += plain;
        if (plain == 8) continue;
        if (isSpace(text[at])) return at;
        ++at;
    }
    while (at < end && !isSpace(text[at])) ++at;
    return at;
}

}  // namespace

/// Reads on behind what is in the buffer, whose used part is dropped first. False at the end.
bool WordReader::_refill() noexcept {
    std::memmove(_buffer.data(), _buffer.data() + _at, _size - _at);
    _offset += static_cast<long>(_at);
    _size -= _at;
    _at = 0;
    ssize_t count = 0;
    do {
        count = pread(_descriptor, _buffer.data() + _size, _buffer.size() - _size,
                      _offset + static_cast<long>(_size));
    } while (count < 0 && errno == EINTR);
    if (count < 0) _error = errno;
    if (count <= 0) return false;
    _size += static_cast<std::size_t>(count);
    return true;
}

long WordReader::skipSpace() noexcept {
    do {
        auto at = _at;
        while (at < _size && isSpace(_buffer[at])) ++at;
        _at = at;
    } while (_at == _size && _refill());
    return _offset + static_cast<long>(_at);
}

std::string_view WordReader::next() noexcept {
    if (_at == _size || isSpace(_buffer[_at])) skipSpace();
    std::size_t length = 0;
    do {
        const auto* const start = _buffer.data() + _at;
        const auto available = std::min(_size - _at, longestWord);
        length = wordEnd(start, length, available);
        // Words are shorter than the buffer, so there is always room to read on.
    } while (length < longestWord && _at + length == _size && _refill());
    const std::string_view word(_buffer.data() + _at, length);
    _at += length;
    return word;
}

}  // namespace PYL
