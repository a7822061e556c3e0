#include "cmpicpp/CmpiArray.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/TextForm.h"

namespace CmpiCpp {

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
    if (!array) throwAbsent(index);
    return {broker(), present(ask(array->ft->getElementAt, array, index), index)};
}

void CmpiArray::setElementAt(unsigned int index, CmpiValue value) {
    CMPIArray* const array = _handle.writable();
    // CMPI 2.1 wants the element type with a NULL as well.
    const CMPIType type = value.type() == CMPI_null ? getType() : value.type();
    check(array->ft->setElementAt(array, index, value.toCMPI(broker()), type));
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
