#include "cimhost/objects/EnumerationFilterHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/InstanceHandle.h"

namespace cimhost {

namespace {

CMPIBoolean match(const CMPIEnumerationFilter* filter, const CMPIInstance* instance,
                  CMPIStatus* status) noexcept {
    return enter<EnumerationFilterObject>(filter, status, [&](EnumerationFilterObject&) {
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
