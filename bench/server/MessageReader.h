#pragma once

#include "bench/server/Socket.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Reads HTTP/1.1 messages one after the other and looks at no more of them than where they end, so
/// that the client's own work hardly shows. A message without length and chunks has no body.
class MessageReader {
public:
    /// The socket must outlive the reader.
    explicit MessageReader(const Socket& socket) : _socket(socket) {}

    /// Takes one message: its bytes, or 0 when the other side has closed before it.
    /// `copy` gets the message as it came. Throws std::runtime_error when the message breaks off.
    std::size_t read(std::string* copy = nullptr);

private:
    bool _fill();
    void _take(std::size_t bytes);
    void _skip(std::size_t bytes);
    void _skipChunks();
    std::string_view _line();
    bool _readHead();

    const Socket& _socket;
    std::array<char, 64 * 1024> _buffer;
    std::size_t _begin = 0;
    std::size_t _end = 0;
    std::string _text;  // of the head or the line
    std::string* _copy = nullptr;
    std::size_t _taken = 0;
};
