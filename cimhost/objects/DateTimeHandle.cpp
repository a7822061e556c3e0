#include "cimhost/objects/DateTimeHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/repository/CimError.h"

namespace cimhost {

namespace {

CMPIUint64 getBinaryFormat(const CMPIDateTime* dateTime, CMPIStatus* status) noexcept {
    return enter<DateTimeObject>(dateTime, status, [](DateTimeObject& object) {
        if (const auto microseconds = microsecondsOf(object.view())) return *microseconds;
        throw CimError(CimCode::failed,
                       std::string(object.view()) + " is before 1970 and has no binary form");
    });
}

CMPIString* getStringFormat(const CMPIDateTime* dateTime, CMPIStatus* status) noexcept {
    return enter<DateTimeObject>(dateTime, status, [](DateTimeObject& object) {
        return &makeText(partOf(object), object.view());
    });
}

CMPIBoolean isIntervalSlot(const CMPIDateTime* dateTime, CMPIStatus* status) noexcept {
    return enter<DateTimeObject>(dateTime, status,
                                 [](DateTimeObject& object) { return isInterval(object.view()); });
}

}  // namespace

const CMPIDateTimeFT DateTimeObject::table = {
    CMPICurrentVersion,
    releaseObject<DateTimeObject>,
    cloneObject<DateTimeObject>,
    getBinaryFormat,
    getStringFormat,
    isIntervalSlot,
};

DateTimeObject& makeDateTimeObject(const Home& home, std::string_view text) {
    if (isDateTime(text)) return make<DateTimeObject>(home, text);
    throw CimError(CimCode::invalidParameter, "\"" + std::string(text) + "\" is no CIM datetime");
}

}  // namespace cimhost
