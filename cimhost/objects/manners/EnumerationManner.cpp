#include "cimhost/objects/EnumerationHandle.h"
#include "cimhost/objects/MannerTables.h"

namespace cimhost {

namespace {

CMPIData getNext(const CMPIEnumeration* enumeration, CMPIStatus* status) noexcept {
    CMPIStatus outcome{CMPI_RC_OK, nullptr};
    CMPIData data = EnumerationObject::table.getNext(enumeration, &outcome);
    if (const auto* const object = findObject<EnumerationObject>(enumeration)) {
        const Manner& manner = object->broker->manner();
        if (outcome.rc == CMPI_RC_OK && manner.has(Habit::marksElementsNull)) {
            data.state |= CMPI_nullValue;
        }
        if (outcome.rc == CMPI_RC_NO_MORE_ELEMENTS && manner.has(Habit::endsEnumerationsQuietly)) {
            outcome.rc = CMPI_RC_OK;
            data.state = CMPI_badValue;
        }
    }
    if (status) *status = outcome;
    return data;
}

}  // namespace

void adapt(CMPIEnumerationFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::marksElementsNull) || manner.has(Habit::endsEnumerationsQuietly)) {
        table.getNext = getNext;
    }
}

}  // namespace cimhost
