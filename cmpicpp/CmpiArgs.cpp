#include "cmpicpp/CmpiArgs.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/Portable.h"

namespace CmpiCpp {

unsigned int CmpiArgs::getArgCount() const {
    const CMPIArgs* const args = _handle.get();
    return !args ? 0 : ask(args->ft->getArgCount, args);
}

std::pair<CmpiName, CmpiData> CmpiArgs::getArgAt(unsigned int index) const {
    const CMPIArgs* const args = _handle.get();
    // Past the end some hosts crash, others succeed.
    if (index >= getArgCount()) throwAbsent(index);
    CMPIString* name = nullptr;
    const CMPIData data = ask(args->ft->getArgAt, args, index, &name);
    return {CmpiName(textOf(name)), CmpiData(broker(), present(data, index))};
}

CmpiData CmpiArgs::getArg(const char* name) const {
    const CMPIArgs* const args = _handle.get();
    if (!args) throwAbsent(name);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = call(args->ft->getArg, args, name, &status);
    // Hosts differ in the code, and few say which argument it is.
    const bool isUntold = status.rc == CMPI_RC_ERR_NO_SUCH_PROPERTY && !status.msg;
    if (isUntold || status.rc == CMPI_RC_ERR_NOT_FOUND) throwAbsent(name);
    check(status);
    return {broker(), present(data, name)};
}

void CmpiArgs::addArg(const char* name, CmpiValue value) {
    CMPIArgs* const args = _handle.writable();
    legalName(name);
    const CMPIValue* const argument = value.toCMPI(broker());
    requireNoNullObjects(argument, value.type());
    tell(args->ft->addArg, args, name, argument, value.type());
}

CmpiArgs makeCmpiArgs(const CmpiBroker& broker) {
    const CMPIBroker* const asked = required(broker.toCMPI());
    return CmpiArgs(
        CmpiHandle<CMPIArgs>::fresh(asked, made(ask(asked->eft->newArgs, asked), "arguments")));
}

}  // namespace CmpiCpp
