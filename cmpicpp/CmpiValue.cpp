#include "cmpicpp/CmpiValue.h"

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiDateTime.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/DataKind.h"
#include "cmpicpp/detail/Portable.h"

namespace CmpiCpp {

// The C interface has values point at objects that can be changed; nobody does.

CmpiValue::CmpiValue(const CmpiObjectPath& path) noexcept
    : _null(path.empty()), _type(CMPI_ref), _isBorrowed(!path._handle.isFresh()) {
    _value.ref = const_cast<CMPIObjectPath*>(path.toCMPI());
}

CmpiValue::CmpiValue(const CmpiInstance& instance) noexcept
    : _null(instance.empty()), _type(CMPI_instance), _isBorrowed(!instance._handle.isFresh()) {
    _value.inst = const_cast<CMPIInstance*>(instance.toCMPI());
}

CmpiValue::CmpiValue(const CmpiDateTime& dateTime) noexcept
    : _null(dateTime.empty()), _type(CMPI_dateTime), _isBorrowed(!dateTime._handle.isFresh()) {
    _value.dateTime = const_cast<CMPIDateTime*>(dateTime.toCMPI());
}

CmpiValue::CmpiValue(const CmpiArray& array) : _null(array.empty()) {
    if (_null) return;
    _type = static_cast<CMPIType>(array.getType() | CMPI_ARRAY);
    _value.array = const_cast<CMPIArray*>(array.toCMPI());
}

CmpiValue::CmpiValue(const CmpiData& data) noexcept
    : _value(data.toCMPI().value),
      _null(data.isNull()),
      _bad(kindOf(data.toCMPI()) == DataKind::bad),
      _type(data.toCMPI().type),
      _isBorrowed(true) {
    if (_type == CMPI_chars) {
        _text = _value.chars;
        _type = CMPI_string;
        _isBorrowed = false;  // it is made a string
    }
}

CmpiValue CmpiValue::char16(CMPIChar16 unit) noexcept {
    CmpiValue value;
    value._value.char16 = unit;
    value._type = CMPI_char16;
    return value;
}

CmpiValue CmpiValue::null(CMPIType type) noexcept {
    CmpiValue value;
    value._null = true;
    value._type = type;
    return value;
}

const CMPIValue* CmpiValue::toCMPI(const CMPIBroker* broker) {
    if (_bad) [[unlikely]] {
        throwBadValue();
    }
    if (_null) return nullptr;
    if (_text != nullptr) {
        _value.string = made(ask(required(broker)->eft->newString, broker, _text), "string");
        _text = nullptr;
    }
    return &_value;
}

const CMPIValue* CmpiValue::toElement(const CMPIBroker* broker) {
    const CMPIValue* const value = toCMPI(broker);
    if (value && _isBorrowed) _value = untilTheCallEnds(broker, _value, _type);
    _isBorrowed = false;
    return value;
}

}  // namespace CmpiCpp
