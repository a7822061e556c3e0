#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace cimhost {

/// XML text under construction. Not safe from several threads.
///
/// Values are escaped with the five entities of XML only and non-ASCII characters stay UTF-8, since
/// clients in use decode nothing else. What XML 1.0 cannot hold - control characters other than
/// tab, line feed and carriage return, U+FFFE, U+FFFF, and bytes that are no UTF-8 - comes out as
/// U+FFFD.
class XmlBuffer {
public:
    XmlBuffer() = default;
    /// With `keepsLines` tabs, line feeds and carriage returns are written as numeric references:
    /// a reader that knows these gets back each of them, which XML else makes one of the others.
    explicit XmlBuffer(bool keepsLines) : _keepsLines(keepsLines) {}

    bool keepsLines() const noexcept { return _keepsLines; }

    /// Appends markup as it stands.
    void markup(std::string_view text) {
        if (_capacity - _size < text.size()) _grow(text.size());
        // Inlined, so that the literals which most markup is cost a few moves each.
        std::memcpy(_data.get() + _size, text.data(), text.size());
        _size += text.size();
    }

    /// Appends character data or the inside of an attribute value in double quotes.
    void text(std::string_view text);

    /// Appends ` name="value"`, with the value escaped.
    void attribute(std::string_view name, std::string_view value);

    /// Good until something is appended.
    std::string_view view() const noexcept { return {_data.get(), _size}; }
    std::size_t size() const noexcept { return _size; }

    /// Keeps the memory.
    void clear() noexcept { _size = 0; }

private:
    void _grow(std::size_t more);
    void _appendMixed(std::string_view text);
    std::size_t _appendOther(std::string_view text);

    std::unique_ptr<char[]> _data = std::make_unique_for_overwrite<char[]>(firstCapacity);
    std::size_t _size = 0;
    std::size_t _capacity = firstCapacity;
    bool _keepsLines = false;

    // An answer about one instance fits; what is longer is mostly a stream, whose pieces all fit
    // into the second.
    static constexpr std::size_t firstCapacity = 4 * 1024;
    static constexpr std::size_t secondCapacity = 24 * 1024;
};

}  // namespace cimhost
