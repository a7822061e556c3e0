#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace PYL {

/// The words of an open file, as the conversion "%1023s" of fscanf(3) takes them: white space is
/// skipped, and a longer word comes in pieces. Reads by offset, so that the descriptor's own
/// position neither counts nor moves, and what is in the file now, not what a buffer remembers.
class WordReader {
public:
    static constexpr std::size_t longestWord = 1023;

    explicit WordReader(int descriptor) noexcept : _descriptor(descriptor) {}

    /// The next word; empty at the end of the file and when it cannot be read. Good until the next
    /// call.
    std::string_view next() noexcept;

    /// The offset behind the last word and the white space that follows it.
    long skipSpace() noexcept;

    /// Whether the words ended because of a failing read. errno of that read is in error().
    bool failed() const noexcept { return _error != 0; }
    int error() const noexcept { return _error; }

private:
    bool _refill() noexcept;

    int _descriptor;
    int _error = 0;
    long _offset = 0;  // in the file, of _buffer[0]
    std::size_t _at = 0;
    std::size_t _size = 0;
    std::array<char, 16384> _buffer;
};

}  // namespace PYL
