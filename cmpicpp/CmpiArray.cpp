#include "cmpicpp/CmpiArray.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/TextForm.h"

namespace CmpiCpp {

namespace {

[[noreturn]] void throwOtherType(const CmpiValue& value) {
    throw CmpiStatus(CMPI_RC_ERR_TYPE_MISMATCH, std::string("The array has no elements of type ") +
                                                    CmpiData::typeToString(value.type()));
}

}  // namespace

unsigned int CmpiArray::getSize() const {
    const CMPIArray* const array = _handle.get();
    return !array ? 0 : ask(array->ft->getSize, array);
}

CMPIType CmpiArray::getType() const {
    const CMPIArray* const array = _handle.required();
    return static_cast<CMPIType>(ask(array->ft->getSimpleType, array) & ~CMPI_ARRAY);
}

CmpiData CmpiArray::getElementAt(unsigned int index) const {
    const CMPIArray* const array = _handle.get();
    // Past the end some hosts succeed.
    if (!array || index >= getSize()) throwAbsent(index);
    return {broker(), present(ask(array->ft->getElementAt, array, index), index)};
}

void CmpiArray::setElementAt(unsigned int index, CmpiValue value) {
    CMPIArray* const array = _handle.writable();
    // Past the end some hosts let the array grow.
    if (index >= getSize()) throwAbsent(index);
    // A null pointer is an error in some hosts and 0 in others, whatever the type; a NULL that is
    // a value of no type is one everywhere.
    static constexpr CMPIValue none{};
    const CMPIValue* const element = value.toElement(broker());
    const CMPIType type = element ? value.type() : CMPIType{CMPI_null};
    if (!element && value.type() != CMPI_null && value.type() != getType()) throwOtherType(value);
    const CMPIStatus status =
        call(array->ft->setElementAt, array, index, element ? element : &none, type);
    // Not every host says what was wrong.
    if (status.rc == CMPI_RC_ERR_FAILED && element && type != getType()) throwOtherType(value);
    check(status);
}

std::string CmpiArray::str() const {
    std::string text;
    if (!empty()) appendArray(text, _handle.get());
    return text;
}

CmpiArray makeCmpiArray(const CmpiBroker& broker, unsigned int size, CMPIType type) {
    const CMPIBroker* const asked = required(broker.toCMPI());
    return CmpiArray(CmpiHandle<CMPIArray>::fresh(
        asked, made(ask(asked->eft->newArray, asked, size, type), "array")));
}

}  // namespace CmpiCpp
