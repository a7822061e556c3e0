#include "cimhost/broker/EnumerationFilterHandle.h"

#include "cimhost/broker/Entry.h"
#include "cimhost/broker/InstanceHandle.h"

namespace cimhost {

namespace {

CMPIBoolean match(const CMPIEnumerationFilter* filter, const CMPIInstance* instance,
                  CMPIStatus* status) noexcept {
    return enter<EnumerationFilterObject>(filter, status,
                                          [&](EnumerationFilterObject&, CMPIrc&) -> CMPIBoolean {
                                              requiredObject<InstanceObject>(instance);
                                              return true;
                                          });
}

}  // namespace

const CMPIEnumerationFilterFT EnumerationFilterObject::table = {
    CMPICurrentVersion,
    releaseObject<EnumerationFilterObject>,
    cloneObject<EnumerationFilterObject>,
    match,
};

}  // namespace cimhost
