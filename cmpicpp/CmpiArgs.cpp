#include "cmpicpp/CmpiArgs.h"

#include "cmpicpp/detail/Calls.h"

namespace CmpiCpp {

unsigned int CmpiArgs::getArgCount() const {
    const CMPIArgs* const args = _handle.get();
    return !args ? 0 : ask(args->ft->getArgCount, args);
}

std::pair<CmpiName, CmpiData> CmpiArgs::getArgAt(unsigned int index) const {
    const CMPIArgs* const args = _handle.get();
    if (!args) throwAbsent(index);
    CMPIString* name = nullptr;
    const CMPIData data = ask(args->ft->getArgAt, args, index, &name);
    return {CmpiName(textOf(name)), CmpiData(broker(), present(data, index))};
}

CmpiData CmpiArgs::getArg(const char* name) const {
    const CMPIArgs* const args = _handle.get();
    if (!args) throwAbsent(name);
    return {broker(), present(ask(args->ft->getArg, args, name), name)};
}

void CmpiArgs::addArg(const char* name, CmpiValue value) {
    CMPIArgs* const args = _handle.writable();
    check(args->ft->addArg(args, name, value.toCMPI(broker()), value.type()));
}

CmpiArgs makeCmpiArgs(const CmpiBroker& broker) {
    const CMPIBroker* const asked = required(broker.toCMPI());
    return CmpiArgs(
        CmpiHandle<CMPIArgs>::fresh(asked, made(ask(asked->eft->newArgs, asked), "arguments")));
}

}  // namespace CmpiCpp
