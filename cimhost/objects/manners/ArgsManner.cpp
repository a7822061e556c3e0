#include "cimhost/objects/ArgsHandle.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/Names.h"

namespace cimhost {

namespace {

const ArgsObject* objectOf(const CMPIArgs* args) noexcept { return findObject<ArgsObject>(args); }

bool isName(const char* name) noexcept {
    return name && *name != '\0' && findNameEnd(name) == std::string_view(name).size();
}

CMPIStatus addArg(const CMPIArgs* args, const char* name, const CMPIValue* value, CMPIType type) {
    if (const ArgsObject* const object = objectOf(args)) {
        endOnArrayWithNulls(*object->broker, value, type);
        if (object->broker->manner().has(Habit::throwsOfItsOwn) && !isName(name)) {
            throw HostException{};
        }
    }
    return ArgsObject::table.addArg(args, name, value, type);
}

CMPIData getArg(const CMPIArgs* args, const char* name, CMPIStatus* status) noexcept {
    CMPIStatus outcome{CMPI_RC_OK, nullptr};
    CMPIData data = ArgsObject::table.getArg(args, name, &outcome);
    if (outcome.rc == CMPI_RC_ERR_NO_SUCH_PROPERTY) {
        outcome = {CMPI_RC_ERR_NOT_FOUND, nullptr};
        data.state = CMPI_notFound;
    }
    if (status) *status = outcome;
    return data;
}

CMPIData getArgAt(const CMPIArgs* args, CMPICount index, CMPIString** name, CMPIStatus* status) {
    const ArgsObject* const object = objectOf(args);
    if (!object || index < object->model.size()) {
        return ArgsObject::table.getArgAt(args, index, name, status);
    }
    if (object->broker->manner().has(Habit::throwsOfItsOwn)) throw HostException{};
    if (status) *status = {CMPI_RC_OK, nullptr};
    return {CMPI_uint64, CMPI_goodValue, {}};
}

}  // namespace

void adapt(CMPIArgsFT& table, const Manner& manner) noexcept {
    const bool throws = manner.has(Habit::throwsOfItsOwn);
    if (throws || manner.has(Habit::crashesOnArraysWithNulls)) table.addArg = addArg;
    if (manner.has(Habit::missingArgumentsAreNotFound)) table.getArg = getArg;
    if (throws || manner.has(Habit::readsQuietlyPastTheEnd)) table.getArgAt = getArgAt;
}

}  // namespace cimhost
