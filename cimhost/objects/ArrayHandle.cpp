#include "cimhost/objects/ArrayHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/Values.h"

namespace cimhost {

namespace {

CMPICount getSize(const CMPIArray* array, CMPIStatus* status) noexcept {
    return enter<ArrayObject>(array, status, [](ArrayObject& object) {
        return static_cast<CMPICount>(object.elements.size());
    });
}

CMPIType getSimpleType(const CMPIArray* array, CMPIStatus* status) noexcept {
    return enter<ArrayObject>(array, status, [](ArrayObject& object) {
        return object.handleType == CMPI_null ? cmpiType(object.elementType, false)
                                              : object.handleType;
    });
}

CMPIData handleAt(const ArrayObject& array, CMPICount index) noexcept {
    CMPIData data{array.handleType, CMPI_nullValue, {}};
    if (const auto* const handle = array.elements[index].get<std::uint64_t>()) {
        data.state = CMPI_goodValue;
        data.value.uint64 = *handle;
    }
    return data;
}

CMPIData getElementAt(const CMPIArray* array, CMPICount index, CMPIStatus* status) noexcept {
    return enter<ArrayObject>(array, status, [&](ArrayObject& object, CMPIrc& code) {
        if (index >= object.elements.size()) {
            code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
            return CMPIData{};
        }
        if (object.handleType != CMPI_null) return handleAt(object, index);
        return toCmpi(partOf(object), object.elements[index]);
    });
}

// Callers of 2.0 say "no value" with the type CMPI_null.
Value elementOf(const ArrayObject& array, const CMPIValue* value, CMPIType type) {
    if (type == CMPI_null) return Value::nullOf(array.elementType, false);
    if (array.handleType != CMPI_null) {
        if (type != array.handleType) throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
        return value && value->uint64 ? Value::unsignedInteger(CimType::uint64, value->uint64)
                                      : Value::null(CimType::none);
    }
    if ((type & CMPI_ARRAY) != 0 || cimType(type) != array.elementType) {
        throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
    }
    return valueOf(value, type);
}

CMPIStatus setElementAt(const CMPIArray* array, CMPICount index, const CMPIValue* value,
                        CMPIType type) noexcept {
    return enter<ArrayObject>(array, [&](ArrayObject& object, CMPIrc& code) {
        if (index < object.elements.size()) {
            object.elements[index] = elementOf(object, value, type);
        } else {
            code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
        }
    });
}

}  // namespace

const CMPIArrayFT ArrayObject::table = {
    CMPICurrentVersion,
    releaseObject<ArrayObject>,
    cloneObject<ArrayObject>,
    getSize,
    getSimpleType,
    getElementAt,
    setElementAt,
};

}  // namespace cimhost
