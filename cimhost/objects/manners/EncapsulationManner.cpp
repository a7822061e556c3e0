#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/MessageText.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/manners/Habits.h"

#include <cstdarg>
#include <string>

/// Makers of objects, log and messages; texts, since they hardly do more than be made.
namespace cimhost {

namespace {

CMPIStatus refuseToLog() noexcept { return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr}; }

CMPIStatus refuseLogMessage(const CMPIBroker*, CMPISeverity, const char*, const char*,
                            const CMPIString*) noexcept {
    return refuseToLog();
}

CMPIStatus refuseTrace(const CMPIBroker*, CMPILevel, const char*, const char*,
                       const CMPIString*) noexcept {
    return refuseToLog();
}

CMPIInstance* newInstanceAs(const CMPIBroker* handle, const CMPIObjectPath* path,
                            CMPIStatus* status) noexcept {
    return enter(handle, status, [&](const Broker& broker) {
        const ObjectPath& model = requiredObject<ObjectPathObject>(path).model.read();
        return &make<InstanceObject>(Home{broker, Origin::factory},
                                     instanceAs(broker.manner(), model, knownClass(broker, model)));
    });
}

CMPIString* newStringAs(const CMPIBroker* handle, const char* text, CMPIStatus* status) noexcept {
    if (text) return encapsulationTable.newString(handle, text, status);
    return nullIfEmpty(encapsulationTable.newString(handle, "", status));
}

CMPIBoolean classPathIsAAs(const CMPIBroker* handle, const CMPIObjectPath* path,
                           const char* className, CMPIStatus* status) noexcept {
    const auto* const object = findObject<ObjectPathObject>(path);
    if (!object || !object->model.read().nameSpace.empty()) {
        return encapsulationTable.classPathIsA(handle, path, className, status);
    }
    answer(status, {CMPI_RC_OK, nullptr});
    return false;
}

CMPIBoolean isOfTypeAs(const CMPIBroker*, const void*, const char*, CMPIStatus* status) noexcept {
    answer(status, {CMPI_RC_OK, nullptr});
    return false;
}

CMPIString* getTypeAs(const CMPIBroker* handle, const void*, CMPIStatus* status) noexcept {
    return encapsulationTable.newString(handle, "", status);
}

CMPIString* getMessageAs(const CMPIBroker* handle, const char*, const char* text,
                         CMPIStatus* status, CMPICount count, ...) noexcept {
    va_list arguments;
    va_start(arguments, count);
    CMPIString* const message = enter(handle, status, [&](const Broker& broker, CMPIrc& code) {
        code = CMPI_RC_ERR_NOT_SUPPORTED;
        return &makeText(
            {broker}, expandMessage(std::string(required(text)), messageInserts(count, arguments)));
    });
    va_end(arguments);
    return message;
}

const char* getCharPtrAs(const CMPIString* string, CMPIStatus* status) noexcept {
    return StringObject::table.getCharPtr(string, QuietStatus(status).get());
}

}  // namespace

const Class* knownClass(const Broker& broker, const ObjectPath& path) noexcept {
    const NameSpace* const nameSpace = broker.repository().find(path.nameSpace);
    return nameSpace ? nameSpace->findClass(path.className) : nullptr;
}

CMPIString* nullIfEmpty(CMPIString* text) noexcept {
    auto* const object = findObject<StringObject>(text);
    if (object && object->length == 0) object->text = nullptr;
    return text;
}

void adapt(CMPIStringFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::leavesStatusesAlone)) {
        table.clone = quietClone<StringObject>;
        table.getCharPtr = getCharPtrAs;
    }
}

void adapt(CMPIBrokerEncFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::namesAnOldVersion)) table.ftVersion = 1;
    table.newInstance = newInstanceAs;
    adaptMakersOfDates(table, manner);
    if (manner.has(Habit::makesNullTexts)) table.newString = newStringAs;
    if (manner.has(Habit::needsNameSpaceForSubclasses)) table.classPathIsA = classPathIsAAs;
    if (manner.has(Habit::knowsNoTypes)) {
        table.isOfType = isOfTypeAs;
        table.getType = getTypeAs;
    }
    if (manner.has(Habit::returnsMessagesAsFailures)) table.getMessage = getMessageAs;
    if (manner.has(Habit::refusesLogging)) {
        table.logMessage = refuseLogMessage;
        table.trace = refuseTrace;
    }
    if (manner.has(Habit::lacksErrorsAndMessages)) {
        table.newCMPIError = nullptr;
        table.openMessageFile = nullptr;
        table.closeMessageFile = nullptr;
        table.getMessage2 = nullptr;
        table.newPropertyList = nullptr;
        table.newStringCP = nullptr;
        table.newEnumerationFilter = nullptr;
    }
}

}  // namespace cimhost
