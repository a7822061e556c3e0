#include "cimhost/cimxml/XmlBuffer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "cimhost/repository/Utf8.h"

namespace cimhost {
namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";  // U+FFFD

/// Stands for itself in text: ASCII, neither a control character nor one of the five.
constexpr bool isPlain(unsigned char byte) noexcept {
    return byte >= 0x20 && byte < 0x80 && byte != '<' && byte != '>' && byte != '&' &&
           byte != '"' && byte != '\'';
}

constexpr auto plain = [] {
    std::array<bool, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
        table[byte] = isPlain(static_cast<unsigned char>(byte));
    return table;
}();

constexpr std::uint64_t everyByte(std::uint64_t byte) noexcept {
    return byte * 0x0101010101010101;
}

/// Not zero when one of the eight bytes is zero.
constexpr std::uint64_t zeroBytes(std::uint64_t word) noexcept {
    return (word - everyByte(1)) & ~word & everyByte(0x80);
}

/// Eight bytes at once: half the time of a reply went into looking at one byte after the other.
bool areEightPlain(const char* text) noexcept {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    const std::uint64_t control = (word - everyByte(0x20)) & ~word & everyByte(0x80);
    const std::uint64_t quotes = zeroBytes(word ^ everyByte('"'));
    // '&' and '\'' differ in their last bit only, '<' and '>' in the one before.
    const std::uint64_t ampersands = zeroBytes((word & everyByte(0xFE)) ^ everyByte('&'));
    const std::uint64_t brackets = zeroBytes((word & everyByte(0xFD)) ^ everyByte('<'));
    return ((word & everyByte(0x80)) | control | quotes | ampersands | brackets) == 0;
}
static_assert((('\'' & 0xFE) == '&') && (('>' & 0xFD) == '<'));

/// Copies the bytes at the front that stand for themselves; their number. There is room for all.
std::size_t copyPlain(std::string_view text, char* to) noexcept {
    std::size_t length = 0;
    for (; text.size() - length >= 8 && areEightPlain(text.data() + length); length += 8) {
        std::memcpy(to + length, text.data() + length, 8);
    }
    // What is left over is taken together with bytes before it.
    if (length != 0 && text.size() - length < 8 && areEightPlain(text.data() + text.size() - 8)) {
        std::memcpy(to + text.size() - 8, text.data() + text.size() - 8, 8);
        return text.size();
    }
    for (; length < text.size() && plain[static_cast<unsigned char>(text[length])]; ++length) {
        to[length] = text[length];
    }
    return length;
}

/// What stands for an ASCII character that is not plain.
std::string_view substituteOf(char character) noexcept {
    switch (character) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '"':
            return "&quot;";
        case '\'':
            return "&apos;";
        case '\t':
            return "\t";
        case '\n':
            return "\n";
        case '\r':
            return "\r";
        default:
            return replacementCharacter;
    }
}

/// Bytes of the character that XML can hold, or 0.
std::size_t xmlCharacterLength(std::string_view text) noexcept {
    const std::optional<CodePoint> character = firstCodePoint(text);
    return character && (character->value | 1) != 0xFFFF ? character->length : 0;
}

}  // namespace

void XmlBuffer::_grow(std::size_t more) {
    const std::size_t capacity = std::max(2 * _capacity, _size + more);
    auto data = std::make_unique_for_overwrite<char[]>(capacity);
    std::memcpy(data.get(), _data.get(), _size);
    _data = std::move(data);
    _capacity = capacity;
}

void XmlBuffer::text(std::string_view text) {
    while (true) {
        if (_capacity - _size < text.size()) _grow(text.size());
        const std::size_t length = copyPlain(text, _data.get() + _size);
        _size += length;
        text.remove_prefix(length);
        if (text.empty()) return;
        text.remove_prefix(_appendOther(text));
    }
}

/// Appends the first character, which is not plain; its bytes.
std::size_t XmlBuffer::_appendOther(std::string_view text) {
    const bool isAscii = static_cast<unsigned char>(text[0]) < 0x80;
    const std::size_t length = isAscii ? 0 : xmlCharacterLength(text);
    markup(isAscii      ? substituteOf(text[0])
           : length > 0 ? text.substr(0, length)
                        : replacementCharacter);
    return std::max<std::size_t>(length, 1);
}

void XmlBuffer::attribute(std::string_view name, std::string_view value) {
    markup(" ");
    markup(name);
    markup("=\"");
    text(value);
    markup("\"");
}

}  // namespace cimhost
