#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <string>
#include <string_view>

namespace cimhost {

/// The text of a value, or a name: UTF-8 that never changes.
///
/// Up to 15 bytes are kept in the object, longer ones in memory of their own. It is half as large
/// as a std::string, and instances, of which a provider may leave ten thousand until its call
/// returns, are made of little else. A plain value; making and copying one throws std::bad_alloc.
class Text {
public:
    Text() noexcept = default;
    // Implicit, so that texts are given as any other string.
    Text(std::string_view content) {
        if (content.size() <= room) {
            _copyShort(content);
        } else {
            _copyOutside(content);
        }
    }
    Text(const std::string& content) : Text(std::string_view(content)) {}
    Text(const char* content) : Text(std::string_view(content)) {}

    Text(const Text& other) : _bytes(other._bytes) {
        if (_isOutside()) _copyOutside(other.view());
    }
    Text(Text&& other) noexcept : _bytes(other._bytes) { other._bytes = {}; }
    Text& operator=(const Text& other) { return *this = Text(other); }
    Text& operator=(Text&& other) noexcept {
        if (this == &other) return *this;
        _release();
        _bytes = other._bytes;
        other._bytes = {};
        return *this;
    }
    ~Text() { _release(); }

    std::string_view view() const noexcept {
        return _isOutside() ? _outside().view() : std::string_view(_bytes.data(), _mark());
    }
    operator std::string_view() const noexcept { return view(); }
    std::string str() const { return std::string(view()); }

    std::size_t size() const noexcept { return view().size(); }
    bool empty() const noexcept { return size() == 0; }

    friend bool operator==(const Text& left, const Text& right) noexcept {
        // Equal bytes are equal short texts; those behind a short one are zero.
        if (std::memcmp(left._bytes.data(), right._bytes.data(), room + 1) == 0) return true;
        return left._isOutside() && right._isOutside() &&
               left._outside().view() == right._outside().view();
    }
    friend std::string operator+(std::string left, const Text& right) {
        return left.append(right.view());
    }
    friend std::ostream& operator<<(std::ostream& out, const Text& text);

private:
    static constexpr std::size_t room = 15;
    static constexpr unsigned char outside = 0xFF;

    /// A long text: this, and its bytes right behind.
    struct Block {
        std::size_t size;
        std::string_view view() const noexcept {
            return {reinterpret_cast<const char*>(this + 1), size};
        }
    };

    // The last byte is the length of a short text, or says that the first eight are an address.
    unsigned char _mark() const noexcept { return static_cast<unsigned char>(_bytes[room]); }
    bool _isOutside() const noexcept { return _mark() == outside; }
    Block& _outside() const noexcept {
        Block* block = nullptr;
        std::memcpy(&block, _bytes.data(), sizeof block);
        return *block;
    }
    void _copyShort(std::string_view content) noexcept;
    void _copyOutside(std::string_view content);
    void _release() noexcept {
        if (_isOutside()) ::operator delete(&_outside());
    }

    std::array<char, room + 1> _bytes{};
};

}  // namespace cimhost
