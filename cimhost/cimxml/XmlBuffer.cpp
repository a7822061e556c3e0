#include "cimhost/cimxml/XmlBuffer.h"

#include "cimhost/repository/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <optional>

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
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = isPlain(static_cast<unsigned char>(byte));
    }
    return table;
}();

/// Whether all sixteen bytes are plain. Looked at together, since half the time of a reply would go
/// into looking at one byte after the other.
bool arePlain(std::uint64_t first, std::uint64_t last) noexcept {
    using Bytes [[gnu::vector_size(16)]] = signed char;
    using Words [[gnu::vector_size(16)]] = std::uint64_t;
    const auto bytes = std::bit_cast<Bytes>(Words{first, last});
    // As signed numbers, the bytes of characters beyond ASCII are less than a blank too. '&' and
    // '\'' differ in their last bit only, '<' and '>' in the one before.
    const auto others =
        (bytes < ' ') | ((bytes & ~1) == '&') | ((bytes & ~2) == '<') | (bytes == '"');
    const auto halves = std::bit_cast<Words>(others);
    return (halves[0] | halves[1]) == 0;
}
static_assert((('\'' & ~1) == '&') && (('>' & ~2) == '<'));

std::uint64_t wordAt(const char* text) noexcept {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// Copies the bytes at the front that stand for themselves; their number. There is room for all.
/// In line, since most texts are short and all plain.
[[gnu::always_inline]] inline std::size_t copyPlain(std::string_view text, char* to) noexcept {
    const char* const from = text.data();
    std::size_t length = 0;
    for (; text.size() - length >= 16; length += 16) {
        if (!arePlain(wordAt(from + length), wordAt(from + length + 8))) break;
        std::memcpy(to + length, from + length, 16);
    }
    // What is left over is taken together with bytes before it.
    if (text.size() - length < 16 && text.size() >= 8) {
        const std::size_t first = text.size() < 16 ? 0 : text.size() - 16;
        const std::size_t last = text.size() - 8;
        if (arePlain(wordAt(from + first), wordAt(from + last))) {
            std::memcpy(to + first, from + first, 8);
            std::memcpy(to + last, from + last, 8);
            return text.size();
        }
    }
    for (; length < text.size() && plain[static_cast<unsigned char>(text[length])]; ++length) {
        to[length] = text[length];
    }
    return length;
}

/// What stands for an ASCII character that is not plain.
std::string_view substituteOf(char character, bool keepsLines) noexcept {
    switch (character) {
        case '<': return "&lt;";
        case '>': return "&gt;";
        case '&': return "&amp;";
        case '"': return "&quot;";
        case '\'': return "&apos;";
        case '\t': return keepsLines ? "&#9;" : "\t";
        case '\n': return keepsLines ? "&#10;" : "\n";
        case '\r': return keepsLines ? "&#13;" : "\r";
        default: return replacementCharacter;
    }
}

/// Bytes of the character that XML can hold, or 0.
std::size_t xmlCharacterLength(std::string_view text) noexcept {
    const std::optional<CodePoint> character = firstCodePoint(text);
    return character && (character->value | 1) != 0xFFFF ? character->length : 0;
}

}  // namespace

void XmlBuffer::_grow(std::size_t more) {
    const std::size_t capacity = std::max({2 * _capacity, _size + more, secondCapacity});
    auto data = std::make_unique_for_overwrite<char[]>(capacity);
    std::memcpy(data.get(), _data.get(), _size);
    _data = std::move(data);
    _capacity = capacity;
}

void XmlBuffer::text(std::string_view text) {
    if (_capacity - _size < text.size()) _grow(text.size());
    const std::size_t length = copyPlain(text, _data.get() + _size);
    _size += length;
    if (length != text.size()) _appendMixed(text.substr(length));
}

/// Appends what begins with a character that is not plain.
void XmlBuffer::_appendMixed(std::string_view text) {
    while (!text.empty()) {
        text.remove_prefix(_appendOther(text));
        if (_capacity - _size < text.size()) _grow(text.size());
        const std::size_t length = copyPlain(text, _data.get() + _size);
        _size += length;
        text.remove_prefix(length);
    }
}

/// Appends the first character, which is not plain; its bytes.
std::size_t XmlBuffer::_appendOther(std::string_view text) {
    const bool isAscii = static_cast<unsigned char>(text[0]) < 0x80;
    const std::size_t length = isAscii ? 0 : xmlCharacterLength(text);
    markup(isAscii      ? substituteOf(text[0], _keepsLines)
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
