#include "cimhost/objects/Entry.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/objects/ResultHandle.h"

/// Contexts and results.
namespace cimhost {

namespace {

bool isForMethod(const CMPIResult* result) noexcept {
    return enter<ResultObject>(result, nullptr, [](ResultObject& object) {
        bool answer = false;
        object.door->pass([&answer](const ResultSink& sink) { answer = sink.isForMethod(); });
        return answer;
    });
}

CMPIStatus giveData(const CMPIResult* result, const CMPIValue* value, CMPIType type) noexcept {
    if (const auto* const object = findObject<ResultObject>(result)) {
        const Broker& broker = *object->broker;
        if (value && type == CMPI_ref && broker.manner().has(Habit::crashesOnReferencesAsData)) {
            endAs(broker, Habit::crashesOnReferencesAsData);
        }
        endOnArrayWithNulls(broker, value, type);
        if (!value && broker.manner().has(Habit::refusesNullMethodResults) && isForMethod(result)) {
            return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
        }
    }
    return ResultObject::table.returnData(result, value, type);
}

CMPIStatus giveInstance(const CMPIResult* result, const CMPIInstance* instance) noexcept {
    if (isForMethod(result)) return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    return ResultObject::table.returnInstance(result, instance);
}

CMPIStatus giveObjectPath(const CMPIResult* result, const CMPIObjectPath* path) noexcept {
    if (isForMethod(result)) return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    return ResultObject::table.returnObjectPath(result, path);
}

}  // namespace

void adapt(CMPIContextFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::lacksCloneOfContexts)) table.clone = nullptr;
}

void adapt(CMPIResultFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::lacksCloneOfContexts)) {
        table.clone = nullptr;
        table.release = nullptr;
    }
    if (manner.has(Habit::lacksErrorsAndMessages)) table.returnError = nullptr;
    if (manner.has(Habit::crashesOnReferencesAsData) ||
        manner.has(Habit::refusesNullMethodResults) ||
        manner.has(Habit::crashesOnArraysWithNulls)) {
        table.returnData = giveData;
    }
    if (manner.has(Habit::refusesObjectsAsMethodResults)) {
        table.returnInstance = giveInstance;
        table.returnObjectPath = giveObjectPath;
    }
}

}  // namespace cimhost
