#include "common/WordReader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace PYL {

namespace {

/// White space of the C locale: what the store's files are separated with, whatever locale the
/// object manager runs in.
constexpr bool isSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
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
        while (_at < _size && isSpace(_buffer[_at])) ++_at;
    } while (_at == _size && _refill());
    return _offset + static_cast<long>(_at);
}

std::string_view WordReader::next() noexcept {
    skipSpace();
    std::size_t length = 0;
    for (;;) {
        auto const end = std::min(_size, _at + longestWord);
        while (_at + length < end && !isSpace(_buffer[_at + length])) ++length;
        // Words are shorter than the buffer, so there is always room to read on.
        if (length == longestWord || _at + length < _size || !_refill()) break;
    }
    std::string_view const word(_buffer.data() + _at, length);
    _at += length;
    return word;
}

}  // namespace PYL
