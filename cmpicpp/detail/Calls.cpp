#include "cmpicpp/detail/Calls.h"

#include <cxxabi.h>

#include <exception>

namespace CmpiCpp {

void throwForeign() {
    try {
        throw;
    } catch (const abi::__forced_unwind&) {
        throw;  // the end of the thread
    } catch (const std::exception& exception) {
        throw CmpiStatus(CMPI_RC_ERR_FAILED,
                         std::string("The object manager threw: ") + exception.what());
    } catch (...) {
        throw CmpiStatus(CMPI_RC_ERR_FAILED, "The object manager threw an exception of its own");
    }
}

void throwNothingMade(const char* what) {
    throw CmpiStatus(CMPI_RC_ERR_FAILED,
                     std::string("The object manager returned no ") + what + " and no error");
}

void throwNoBroker() {
    throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE,
                     "There is no broker to ask: was it recorded with setBroker()?");
}

void throwNoContext() {
    throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "There is no context to ask with");
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
    try {
        const char* const text = !string ? nullptr : call(string->ft->getCharPtr, string, nullptr);
        return !text ? "" : text;
    } catch (const CmpiStatus&) {
        return "";
    }
}

CMPICount keyCount(const CMPIObjectPath* path) {
    CMPICount count = 0;
    forEachKey(path, [&count](const CMPIString*, const CMPIData&) { return ++count != 0; });
    return count;
}

}  // namespace CmpiCpp
