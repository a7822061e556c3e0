#include "cmpicpp/detail/Calls.h"

namespace CmpiCpp {

void throwNothingMade(const char* what) {
    throw CmpiStatus(CMPI_RC_ERR_FAILED,
                     std::string("The object manager returned no ") + what + " and no error");
}

void throwNoBroker() {
    throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "There is no broker to ask");
}

void throwBadValue() {
    throw CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER, "The value to pass on is bad");
}

void throwAbsent(const char* name) {
    throw CmpiStatus(CMPI_RC_ERR_NO_SUCH_PROPERTY, std::string("There is no ") + name);
}

void throwAbsent(unsigned int index) {
    throw CmpiStatus(CMPI_RC_ERR_NO_SUCH_PROPERTY, "There is no item " + std::to_string(index));
}

const char* textOrEmpty(const CMPIString* string) noexcept {
    if (!string) return "";
    const char* const text = string->ft->getCharPtr(string, nullptr);
    return !text ? "" : text;
}

}  // namespace CmpiCpp
