#include "cmpicpp/CmpiName.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace CmpiCpp {

namespace {

constexpr unsigned char lower(char character) noexcept {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte;
}

constexpr bool sameLetter(char left, char right) noexcept { return lower(left) == lower(right); }

}  // namespace

CmpiName::CmpiName(const char* text) {
    if (text != nullptr) _assign(text);
}

CmpiName::CmpiName(std::string_view text) { _assign(text); }

CmpiName::CmpiName(const std::string& text) { _assign(text); }

CmpiName::CmpiName(const CmpiName& other) { _assign(other.view()); }

CmpiName::CmpiName(CmpiName&& other) noexcept
    : _long(std::move(other._long)), _size(std::exchange(other._size, 0)), _short(other._short) {
    other._short.front() = '\0';
}

CmpiName& CmpiName::operator=(const CmpiName& other) { return *this = CmpiName(other); }

CmpiName& CmpiName::operator=(CmpiName&& other) noexcept {
    _long.swap(other._long);
    _short.swap(other._short);
    std::swap(_size, other._size);
    return *this;
}

void CmpiName::_assign(std::string_view text) {
    char* target = _short.data();
    if (text.size() > shortSize) {
        _long = std::make_unique_for_overwrite<char[]>(text.size() + 1);
        target = _long.get();
    }
    std::copy(text.begin(), text.end(), target);
    target[text.size()] = '\0';
    _size = text.size();
}

bool CmpiName::_equal(const char* left, const char* right, std::size_t size) noexcept {
    return equalNames({left, size}, {right, size});
}

bool operator<(const CmpiName& left, const CmpiName& right) noexcept {
    const std::string_view a = left.view();
    const std::string_view b = right.view();
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char x, char y) { return lower(x) < lower(y); });
}

std::ostream& operator<<(std::ostream& out, const CmpiName& name) { return out << name.view(); }

bool equalNames(std::string_view left, std::string_view right) noexcept {
    // Names are mostly written as the class declares them.
    return left == right || (left.size() == right.size() &&
                             std::equal(left.begin(), left.end(), right.begin(), sameLetter));
}

}  // namespace CmpiCpp
