#pragma once

#include "pylcommon_export.h"

#include <array>
#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

namespace CmpiCpp {

/// A CIM name (class, namespace, key, property, role, method) or a host name.
///
/// Compares without regard to ASCII case (DSP0004, 5.2.3). Names of up to 46 bytes live inside the
/// object, so that class and key names cost no allocation. A value type.
class PYL_EXPORT CmpiName {
public:
    CmpiName() noexcept = default;
    /// @{
    /// Copies the text, which may be any; null is the empty name.
    CmpiName(
        const char* text);  // NOLINT(google-explicit-constructor): names are written as literals
    CmpiName(std::string_view text);    // NOLINT(google-explicit-constructor)
    CmpiName(const std::string& text);  // NOLINT(google-explicit-constructor)
    /// @}
    /// @{
    /// Copying allocates for long names alone, moving never.
    CmpiName(const CmpiName& other);
    CmpiName(CmpiName&& other) noexcept;
    CmpiName& operator=(const CmpiName& other);
    CmpiName& operator=(CmpiName&& other) noexcept;
    /// @}
    ~CmpiName() = default;

    /// @{
    /// The size in bytes, without a closing zero.
    bool empty() const noexcept { return _size == 0; }
    std::size_t size() const noexcept { return _size; }
    /// @}
    /// @{
    /// The text in the case in which it was written. c_str() and view() are good until the name
    /// changes.
    const char* c_str() const noexcept { return _long ? _long.get() : _short.data(); }
    std::string_view view() const noexcept { return {c_str(), _size}; }
    std::string str() const { return std::string(view()); }
    /// @}

    /// Without regard to ASCII case.
    friend bool operator==(const CmpiName& left, const CmpiName& right) noexcept {
        return left._size == right._size && _equal(left.c_str(), right.c_str(), left._size);
    }
    /// Orders as == compares: by lower-case text.
    PYL_EXPORT friend bool operator<(const CmpiName& left, const CmpiName& right) noexcept;

private:
    static constexpr std::size_t shortSize = 46;

    static bool _equal(const char* left, const char* right, std::size_t size) noexcept;
    void _assign(std::string_view text);

    std::unique_ptr<char[]> _long;  // set for names that do not fit inside
    std::size_t _size = 0;
    std::array<char, shortSize + 2> _short{};
};

/// Writes the text in the case in which it was written.
PYL_EXPORT std::ostream& operator<<(std::ostream& out, const CmpiName& name);

/// True when two names are alike but for ASCII case.
PYL_EXPORT bool equalNames(std::string_view left, std::string_view right) noexcept;

}  // namespace CmpiCpp
