#pragma once

#include "cmpi/cmpidt.h"
#include "pylcommon_export.h"

#include <string>
#include <type_traits>

namespace CmpiCpp {

class CmpiArray;
class CmpiData;
class CmpiDateTime;
class CmpiInstance;
class CmpiObjectPath;

/// A value on its way into the object manager: the argument type of addKey, setProperty, addArg and
/// the like. Made from the C++ value in place and never kept: it borrows texts and objects.
///
/// The C++ type decides the CIM type: bool is boolean, unsigned short uint16, const char* and
/// std::string string, and so on. A null `const char*` and an empty object are NULL.
/// A text becomes a CMPIString of the broker, since CMPI_chars arguments mean different things to
/// different object managers.
class PYL_EXPORT CmpiValue {
public:
    // NOLINTBEGIN(google-explicit-constructor): conversion is what the class is for
    /// @{
    /// The value of what was given. An array throws what CmpiArray::getType() does.
    CmpiValue(bool value) noexcept : _type(CMPI_boolean) { _value.boolean = value ? 1 : 0; }
    CmpiValue(unsigned char value) noexcept : _type(CMPI_uint8) { _value.uint8 = value; }
    CmpiValue(signed char value) noexcept : _type(CMPI_sint8) { _value.sint8 = value; }
    CmpiValue(unsigned short value) noexcept : _type(CMPI_uint16) { _value.uint16 = value; }
    CmpiValue(short value) noexcept : _type(CMPI_sint16) { _value.sint16 = value; }
    CmpiValue(unsigned int value) noexcept : _type(CMPI_uint32) { _value.uint32 = value; }
    CmpiValue(int value) noexcept : _type(CMPI_sint32) { _value.sint32 = value; }
    CmpiValue(unsigned long value) noexcept : _type(CMPI_uint64) { _value.uint64 = value; }
    CmpiValue(long value) noexcept : _type(CMPI_sint64) { _value.sint64 = value; }
    CmpiValue(unsigned long long value) noexcept : _type(CMPI_uint64) { _value.uint64 = value; }
    CmpiValue(long long value) noexcept : _type(CMPI_sint64) { _value.sint64 = value; }
    CmpiValue(float value) noexcept : _type(CMPI_real32) { _value.real32 = value; }
    CmpiValue(double value) noexcept : _type(CMPI_real64) { _value.real64 = value; }
    CmpiValue(const char* text) noexcept : _text(text), _null(!text), _type(CMPI_string) {}
    CmpiValue(const std::string& text) noexcept : _text(text.c_str()), _type(CMPI_string) {}
    CmpiValue(const CmpiObjectPath& path) noexcept;
    CmpiValue(const CmpiInstance& instance) noexcept;
    CmpiValue(const CmpiDateTime& dateTime) noexcept;
    CmpiValue(const CmpiArray& array);
    CmpiValue(const CmpiData& data) noexcept;
    /// @}
    // NOLINTEND(google-explicit-constructor)
    template <typename T>
    requires(std::is_pointer_v<T> && !std::is_convertible_v<T, const char*>) CmpiValue(T)
    = delete;  // a stray pointer would convert to bool

    /// A UTF-16 code unit; a plain unsigned short is uint16.
    static CmpiValue char16(CMPIChar16 unit) noexcept;
    /// NULL of this type (array bit included where meant).
    static CmpiValue null(CMPIType type) noexcept;

    /// The CIM type, array bit included.
    CMPIType type() const noexcept { return _type; }
    /// Whether it is NULL, of whatever type.
    bool isNull() const noexcept { return _null; }

    /// What the C interface takes: a pointer to the value, or nullptr for NULL. A text is made a
    /// CMPIString of the broker first. Throws CmpiStatus when the broker refuses, or for a bad
    /// value of CmpiData. Good while *this is.
    const CMPIValue* toCMPI(const CMPIBroker* broker);

    /// The same for an element of an array. There are brokers whose arrays keep the pointer of an
    /// object, so that one which is not fresh, and may end before the array is used, is copied into
    /// one that lives until the provider's function returns.
    const CMPIValue* toElement(const CMPIBroker* broker);

private:
    CmpiValue() = default;

    CMPIValue _value{};
    const char* _text = nullptr;
    bool _null = false;
    bool _bad = false;  // made of data that the object manager marked as bad
    CMPIType _type = CMPI_null;
    bool _isBorrowed = false;  // an object that may end before the call does
};

}  // namespace CmpiCpp
