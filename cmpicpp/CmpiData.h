#pragma once

#include "cmpi/cmpift.h"
#include "pylcommon_export.h"

#include <string>

namespace CmpiCpp {

class CmpiArray;
class CmpiDateTime;
class CmpiInstance;
class CmpiObjectPath;

/// A value that came from the object manager: a key, a property, an argument or an array element.
/// Borrowed from the object that it was read from, and good as long as that is.
///
/// The as... readers convert among integer widths, because object managers report keys whose exact
/// type they do not know as sint64 (CMPI 2.1); the largest ones of uint64 are negative then, and
/// read as they were. A value that does not fit, a NULL or another kind of
/// value is CmpiStatus CMPI_RC_ERR_TYPE_MISMATCH with a text that names both types.
class PYL_EXPORT CmpiData {
public:
    /// The NULL of no type.
    CmpiData() noexcept = default;
    /// Borrows the data as they are, and the broker for the objects in them.
    CmpiData(const CMPIBroker* broker, const CMPIData& data) noexcept
        : _broker(broker), _data(data) {}

    /// @{
    /// For calls of the C interface. The broker is nullptr where none is known.
    const CMPIData& toCMPI() const noexcept { return _data; }
    const CMPIBroker* broker() const noexcept { return _broker; }
    /// @}

    /// The CMPI type code; of an array its elements' type, without the array bit.
    CMPIType getType() const noexcept { return static_cast<CMPIType>(_data.type & ~CMPI_ARRAY); }
    /// Whether it is declared as an array, be it NULL or not.
    bool isArray() const noexcept { return (_data.type & CMPI_ARRAY) != 0; }
    /// Whether it is NULL. What the object manager marked as bad or missing is not.
    bool isNull() const noexcept;

    /// @{
    /// Readers, one for each kind of value. Objects and arrays are borrowed, as the data
    /// themselves.
    bool asBool() const;
    unsigned long long asUint64() const;
    long long asSint64() const;
    double asReal64() const;
    /// Of a string, a datetime or a char16.
    std::string asString() const;
    CmpiObjectPath asObjectPath() const;
    CmpiInstance asInstance() const;
    CmpiArray asArray() const;
    CmpiDateTime asDateTime() const;
    /// @}

    /// The value as MOF writes it: `"a \"text\""`, `12`, `true`, `NULL`, `{1, 2, NULL}`; object
    /// paths as CmpiObjectPath::str() in quotes, instances as `instance of C {a = 1; b = "x";}`.
    /// Never throws for a value the object manager gave wrongly: that reads `<bad value>`.
    std::string str() const;

    /// Equal shape and value: integers by number whatever their width, texts exactly, references by
    /// path, datetimes by their text. NULLs are equal when both are.
    PYL_EXPORT friend bool operator==(const CmpiData& left, const CmpiData& right);

    /// "uint8", "string", "datetime", "reference", "instance" ...; an array code names its element
    /// type; a code outside the standard's list is "unknown".
    static const char* typeToString(CMPIType type) noexcept;

private:
    const CMPIBroker* _broker = nullptr;
    CMPIData _data{};
};

}  // namespace CmpiCpp
