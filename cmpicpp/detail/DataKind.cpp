#include "cmpicpp/detail/DataKind.h"

namespace CmpiCpp {

namespace {

DataKind ifPresent(const void* object, DataKind kind) noexcept {
    return !object ? DataKind::null : kind;
}

Integer fromSigned(long long value) noexcept {
    return {static_cast<unsigned long long>(value), value < 0};
}

}  // namespace

DataKind kindOf(const CMPIData& data) noexcept {
    if ((data.state & (CMPI_badValue | CMPI_notFound)) != 0) return DataKind::bad;
    if ((data.state & CMPI_nullValue) != 0) return DataKind::null;
    if ((data.type & CMPI_ARRAY) != 0) return ifPresent(data.value.array, DataKind::array);
    switch (data.type) {
        case CMPI_null: return DataKind::null;
        case CMPI_boolean: return DataKind::boolean;
        case CMPI_char16: return DataKind::char16;
        case CMPI_uint8:
        case CMPI_uint16:
        case CMPI_uint32:
        case CMPI_uint64:
        case CMPI_sint8:
        case CMPI_sint16:
        case CMPI_sint32:
        case CMPI_sint64: return DataKind::integer;
        case CMPI_real32:
        case CMPI_real64: return DataKind::real;
        case CMPI_string: return ifPresent(data.value.string, DataKind::text);
        case CMPI_chars: return ifPresent(data.value.chars, DataKind::text);
        case CMPI_dateTime: return ifPresent(data.value.dateTime, DataKind::dateTime);
        case CMPI_ref: return ifPresent(data.value.ref, DataKind::reference);
        case CMPI_instance: return ifPresent(data.value.inst, DataKind::instance);
        default: return DataKind::other;
    }
}

Integer integerOf(const CMPIData& data) noexcept {
    switch (data.type) {
        case CMPI_uint8: return {data.value.uint8, false};
        case CMPI_uint16: return {data.value.uint16, false};
        case CMPI_uint32: return {data.value.uint32, false};
        case CMPI_uint64: return {data.value.uint64, false};
        case CMPI_sint8: return fromSigned(data.value.sint8);
        case CMPI_sint16: return fromSigned(data.value.sint16);
        case CMPI_sint32: return fromSigned(data.value.sint32);
        default: return fromSigned(data.value.sint64);
    }
}

}  // namespace CmpiCpp
