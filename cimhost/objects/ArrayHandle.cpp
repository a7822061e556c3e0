#include "cimhost/objects/ArrayHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/CimError.h"

namespace cimhost {

namespace {

CMPICount getSize(const CMPIArray* array, CMPIStatus* status) noexcept {
    return enter<ArrayObject>(array, status, [](ArrayObject& object, CMPIrc&) {
        return static_cast<CMPICount>(object.elements.size());
    });
}

CMPIType getSimpleType(const CMPIArray* array, CMPIStatus* status) noexcept {
    return enter<ArrayObject>(array, status, [](ArrayObject& object, CMPIrc&) {
        return cmpiType(object.elementType, false);
    });
}

CMPIData getElementAt(const CMPIArray* array, CMPICount index, CMPIStatus* status) noexcept {
    return enter<ArrayObject>(array, status, [&](ArrayObject& object, CMPIrc& code) {
        if (index < object.elements.size()) return toCmpi(partOf(object), object.elements[index]);
        code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
        return CMPIData{};
    });
}

// Callers of 2.0 say "no value" with the type CMPI_null.
Value elementOf(const ArrayObject& array, const CMPIValue* value, CMPIType type) {
    if (type == CMPI_null) return Value::nullOf(array.elementType, false);
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

CMPIArray* makeArray(const Broker& broker, const Value& array) {
    const Value::Array* const elements = array.get<Value::Array>();
    if (!elements) throw CimError(CimCode::typeMismatch, "an array object needs an array value");
    return &make<ArrayObject>(Home{broker}, array.type(), *elements);
}

}  // namespace cimhost
