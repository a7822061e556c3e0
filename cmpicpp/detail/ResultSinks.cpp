#include "cmpicpp/detail/ResultSinks.h"

#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {

void PathSink::deliver(const CmpiObjectPath& path) {
    if (path.empty()) throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "The path to deliver is empty");
    check(_result->ft->returnObjectPath(_result, path.toCMPI()));
}

void InstanceSink::deliver(const CmpiInstance& instance) {
    if (instance.empty()) {
        throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "The instance to deliver is empty");
    }
    check(_result->ft->returnInstance(_result, instance.toCMPI()));
}

// CMPI has slots of their own for objects; a NULL has no object and goes out as data.
void MethodSink::_returned(CmpiValue value) {
    const CMPIValue* const cmpi = value.toCMPI(_broker);
    if (cmpi != nullptr && value.type() == CMPI_ref) {
        check(_result->ft->returnObjectPath(_result, cmpi->ref));
    } else if (cmpi != nullptr && value.type() == CMPI_instance) {
        check(_result->ft->returnInstance(_result, cmpi->inst));
    } else {
        check(_result->ft->returnData(_result, cmpi, value.type()));
    }
}

void MethodSink::_output(const CmpiName& name, CmpiValue value) {
    check(_out->ft->addArg(_out, name.c_str(), value.toCMPI(_broker), value.type()));
}

}  // namespace CmpiCpp
