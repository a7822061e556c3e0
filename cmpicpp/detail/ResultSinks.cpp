#include "cmpicpp/detail/ResultSinks.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/Portable.h"

namespace CmpiCpp {

void PathSink::deliver(const CmpiObjectPath& path) {
    if (path.empty()) throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "The path to deliver is empty");
    tell(_result->ft->returnObjectPath, _result, path.toCMPI());
}

void InstanceSink::deliver(const CmpiInstance& instance) {
    if (instance.empty()) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "The instance to deliver is empty");
    }
    tell(_result->ft->returnInstance, _result, instance.toCMPI());
}

// CMPI has functions of their own for objects, but some hosts take a method's result as data alone,
// and others do not survive a reference as data: so the one is tried before the other. A NULL is no
// object; where it is refused, a result that is left out says the same.
void MethodSink::_returned(CmpiValue value) {
    const CMPIValue* const cmpi = value.toCMPI(_broker);
    requireNoNullObjects(cmpi, value.type());
    const auto& table = *_result->ft;
    CMPIStatus status{CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    if (cmpi != nullptr && value.type() == CMPI_ref) {
        status = call(table.returnObjectPath, _result, cmpi->ref);
    } else if (cmpi != nullptr && value.type() == CMPI_instance) {
        status = call(table.returnInstance, _result, cmpi->inst);
    }
    if (status.rc == CMPI_RC_ERR_NOT_SUPPORTED) {
        status = call(table.returnData, _result, cmpi, value.type());
    }
    if (!cmpi && status.rc == CMPI_RC_ERR_INVALID_PARAMETER) return;
    check(status);
}

void MethodSink::_output(const CmpiName& name, CmpiValue value) {
    legalName(name.c_str());
    const CMPIValue* const argument = value.toCMPI(_broker);
    requireNoNullObjects(argument, value.type());
    tell(_out->ft->addArg, _out, name.c_str(), argument, value.type());
}

}  // namespace CmpiCpp
