#include "cmpicpp/CmpiData.h"

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/DataKind.h"
#include "cmpicpp/detail/Equality.h"
#include "cmpicpp/detail/TextForm.h"

#include <algorithm>
#include <array>
#include <limits>

namespace CmpiCpp {

namespace {

struct TypeRow {
    CMPIType type;
    const char* name;
};

constexpr auto typeRows = std::to_array<TypeRow>({
    {CMPI_null, "null"},
    {CMPI_boolean, "boolean"},
    {CMPI_char16, "char16"},
    {CMPI_real32, "real32"},
    {CMPI_real64, "real64"},
    {CMPI_uint8, "uint8"},
    {CMPI_uint16, "uint16"},
    {CMPI_uint32, "uint32"},
    {CMPI_uint64, "uint64"},
    {CMPI_sint8, "sint8"},
    {CMPI_sint16, "sint16"},
    {CMPI_sint32, "sint32"},
    {CMPI_sint64, "sint64"},
    {CMPI_instance, "instance"},
    {CMPI_ref, "reference"},
    {CMPI_args, "args"},
    {CMPI_class, "class"},
    {CMPI_filter, "filter"},
    {CMPI_enumeration, "enumeration"},
    {CMPI_string, "string"},
    {CMPI_chars, "chars"},
    {CMPI_dateTime, "datetime"},
    {CMPI_ptr, "ptr"},
    {CMPI_charsptr, "charsptr"},
});

std::string describe(const CMPIData& data) {
    const DataKind kind = kindOf(data);
    if (kind == DataKind::bad) return "a bad value";
    std::string text = kind == DataKind::null ? "NULL " : "";
    text += CmpiData::typeToString(data.type);
    if ((data.type & CMPI_ARRAY) != 0) text += " array";
    if (kind == DataKind::integer || kind == DataKind::char16) {
        text += ' ';
        appendData(text, data);
    }
    return text;
}

[[noreturn]] void throwMismatch(const CMPIData& data, CMPIType expected) {
    throw CmpiStatus(
        CMPI_RC_ERR_TYPE_MISMATCH,
        std::string("Expected ") + CmpiData::typeToString(expected) + ", got " + describe(data));
}

void expect(const CMPIData& data, DataKind kind, CMPIType expected) {
    if (kindOf(data) != kind) throwMismatch(data, expected);
}

}  // namespace

bool CmpiData::isNull() const noexcept { return kindOf(_data) == DataKind::null; }

bool CmpiData::asBool() const {
    expect(_data, DataKind::boolean, CMPI_boolean);
    return _data.value.boolean != 0;
}

unsigned long long CmpiData::asUint64() const {
    expect(_data, DataKind::integer, CMPI_uint64);
    const Integer integer = integerOf(_data);
    // Object managers that read integer keys back as sint64 give the largest ones as negative.
    const bool isKey = _data.type == CMPI_sint64 && (_data.state & CMPI_keyValue) != 0;
    if (integer.negative && !isKey) throwMismatch(_data, CMPI_uint64);
    return integer.bits;
}

long long CmpiData::asSint64() const {
    expect(_data, DataKind::integer, CMPI_sint64);
    const Integer integer = integerOf(_data);
    constexpr unsigned long long largest = std::numeric_limits<long long>::max();
    if (!integer.negative && integer.bits > largest) throwMismatch(_data, CMPI_sint64);
    return static_cast<long long>(integer.bits);
}

double CmpiData::asReal64() const {
    expect(_data, DataKind::real, CMPI_real64);
    return realOf(_data);
}

std::string CmpiData::asString() const {
    const DataKind kind = kindOf(_data);
    if (kind == DataKind::text || kind == DataKind::dateTime) {
        return std::string(charactersOf(_data));
    }
    std::string text;
    if (kind != DataKind::char16 || !appendUtf8(text, _data.value.char16)) {
        throwMismatch(_data, CMPI_string);
    }
    return text;
}

CmpiObjectPath CmpiData::asObjectPath() const {
    expect(_data, DataKind::reference, CMPI_ref);
    return CmpiObjectPath(CmpiHandle<CMPIObjectPath>::borrowed(_broker, _data.value.ref));
}

CmpiInstance CmpiData::asInstance() const {
    expect(_data, DataKind::instance, CMPI_instance);
    return CmpiInstance(CmpiHandle<CMPIInstance>::borrowed(_broker, _data.value.inst));
}

CmpiArray CmpiData::asArray() const {
    if (kindOf(_data) != DataKind::array) {
        throw CmpiStatus(CMPI_RC_ERR_TYPE_MISMATCH, "Expected an array, got " + describe(_data));
    }
    return CmpiArray(CmpiHandle<CMPIArray>::borrowed(_broker, _data.value.array));
}

CmpiDateTime CmpiData::asDateTime() const {
    expect(_data, DataKind::dateTime, CMPI_dateTime);
    return CmpiDateTime(CmpiHandle<CMPIDateTime>::borrowed(_broker, _data.value.dateTime));
}

std::string CmpiData::str() const {
    std::string text;
    appendData(text, _data);
    return text;
}

bool operator==(const CmpiData& left, const CmpiData& right) {
    return equalData(left._data, right._data);
}

const char* CmpiData::typeToString(CMPIType type) noexcept {
    const auto element = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    const auto* const row = std::ranges::find(typeRows, element, &TypeRow::type);
    return row == typeRows.end() ? "unknown" : row->name;
}

}  // namespace CmpiCpp
