#include "cimhost/objects/DateTimeHandle.h"
#include "cimhost/objects/manners/Habits.h"

#include <string_view>

namespace cimhost {

namespace {

bool hasShapeOfDateTime(std::string_view text) noexcept {
    return text.size() == dateTimeLength && text[14] == '.' &&
           text.find_first_not_of("0123456789*.+-:") == std::string_view::npos;
}

CMPIDateTime* takeAnyChars(const CMPIBroker* handle, const char* text,
                           CMPIStatus* status) noexcept {
    if (!text || !hasShapeOfDateTime(text)) {
        return encapsulationTable.newDateTimeFromChars(handle, text, status);
    }
    return enter(handle, status, [&](const Broker& broker) {
        return &make<DateTimeObject>(Home{broker, Origin::factory}, text);
    });
}

CMPIDateTime* newDateTimeFromBinaryAs(const CMPIBroker* handle, CMPIUint64 microseconds,
                                      CMPIBoolean interval, CMPIStatus* status) {
    const Broker* const broker = Broker::find(handle);
    if (broker && !dateTimeOf(microseconds, interval != 0)) {
        if (broker->manner().has(Habit::throwsOfItsOwn)) throw HostException();
        endAs(*broker, Habit::writesDatesBeyondTheirText);
    }
    return encapsulationTable.newDateTimeFromBinary(handle, microseconds, interval, status);
}

}  // namespace

void adapt(CMPIDateTimeFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::leavesStatusesAlone)) table.clone = quietClone<DateTimeObject>;
}

void adaptMakersOfDates(CMPIBrokerEncFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::acceptsImpossibleDates)) table.newDateTimeFromChars = takeAnyChars;
    if (manner.has(Habit::throwsOfItsOwn) || manner.has(Habit::writesDatesBeyondTheirText)) {
        table.newDateTimeFromBinary = newDateTimeFromBinaryAs;
    }
}

}  // namespace cimhost
