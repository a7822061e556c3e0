#include "toolkit/Methods.h"

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiStatus.h"

namespace PYL {

using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

void requireMethod(const CmpiObjectPath& path, const CmpiName& methodName, const char* ofClass,
                   const char* method) {
    if (path.getClassName() == CmpiName(ofClass) && methodName == CmpiName(method)) return;
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_METHOD_NOT_FOUND, "no such method: " + methodName.str());
}

void deliverArray(CmpiCpp::CmpiMethodResult& result, const char* name,
                  const CmpiCpp::CmpiArray& array) {
    CMPIData data{};
    data.type = static_cast<CMPIType>(array.getType() | CMPI_ARRAY);
    data.state = CMPI_goodValue;
    data.value.array = const_cast<CMPIArray*>(array.toCMPI());  // C has no const here; only read
    result.deliver(CmpiName(name), CmpiCpp::CmpiData(array.broker(), data));
}

}  // namespace PYL
