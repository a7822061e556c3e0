#include "bench/server/MessageReader.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <stdexcept>

namespace {

/// The value of a field in a head in lower case; empty when it is not there.
std::string_view valueOf(std::string_view head, std::string_view field) {
    const std::size_t at = head.find(field);
    if (at == std::string_view::npos) return {};
    std::string_view value = head.substr(at + field.size());
    value = value.substr(0, value.find('\r'));
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    return value;
}

std::size_t numberIn(std::string_view text, int base) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end == text.data()) {
        throw std::runtime_error("a length is no number");
    }
    return number;
}

}  // namespace

std::size_t MessageReader::read(std::string* copy) {
    _copy = copy;
    _taken = 0;
    if (!_readHead()) return 0;
    const std::string_view head = _text;
    if (const auto length = valueOf(head, "\r\ncontent-length:"); !length.empty()) {
        _skip(numberIn(length, 10));
    } else if (valueOf(head, "\r\ntransfer-encoding:") == "chunked") {
        _skipChunks();
    }
    return _taken;
}

bool MessageReader::_fill() {
    _begin = 0;
    _end = _socket.read(_buffer.data(), _buffer.size());
    return _end != 0;
}

void MessageReader::_take(std::size_t bytes) {
    if (_copy) _copy->append(_buffer.data() + _begin, bytes);
    _begin += bytes;
    _taken += bytes;
}

void MessageReader::_skip(std::size_t bytes) {
    while (bytes != 0) {
        if (_begin == _end && !_fill()) throw std::runtime_error("the message breaks off");
        const std::size_t piece = std::min(bytes, _end - _begin);
        _take(piece);
        bytes -= piece;
    }
}

// The line without its end, good until the next one.
std::string_view MessageReader::_line() {
    _text.clear();
    for (;;) {
        if (_begin == _end && !_fill()) throw std::runtime_error("the message breaks off");
        const char* const from = _buffer.data() + _begin;
        const char* const end = _buffer.data() + _end;
        const char* const feed = std::find(from, end, '\n');
        _text.append(from, feed);
        _take(static_cast<std::size_t>(feed - from) + (feed == end ? 0 : 1));
        if (feed != end) break;
    }
    if (!_text.empty() && _text.back() == '\r') _text.pop_back();
    return _text;
}

void MessageReader::_skipChunks() {
    for (std::size_t size = 1; size != 0;) {
        size = numberIn(_line(), 16);
        if (size != 0) _skip(size + 2);
    }
    while (!_line().empty()) {
    }
}

bool MessageReader::_readHead() {
    if (_begin == _end && !_fill()) return false;
    std::string head;
    for (std::string_view line = _line(); !line.empty(); line = _line()) {
        head.append(line);
        head.append("\r\n");
    }
    std::transform(head.begin(), head.end(), head.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    _text = std::move(head);
    return true;
}
