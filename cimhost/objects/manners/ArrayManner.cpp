#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/DateTimeHandle.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace cimhost {

namespace {

bool isObject(CimType type) noexcept {
    return type == CimType::string || type == CimType::dateTime || type == CimType::reference ||
           type == CimType::instance;
}

/// Which arrays hold a clone's pointer, so that they know when it is released.
class KeptClones {
public:
    void add(const void* handle, ArrayObject& array) {
        const std::lock_guard lock(_mutex);
        if (!array.isDangling) array.isDangling = std::make_shared<bool>(false);
        _kept.emplace(handle, array.isDangling);
    }

    void release(const void* handle) noexcept {
        const std::lock_guard lock(_mutex);
        const auto [begin, end] = _kept.equal_range(handle);
        std::for_each(begin, end, [](const auto& kept) {
            if (const auto isDangling = kept.second.lock()) *isDangling = true;
        });
        _kept.erase(begin, end);
    }

private:
    std::mutex _mutex;
    std::unordered_multimap<const void*, std::weak_ptr<bool>> _kept;
};

KeptClones& keptClones() {
    static KeptClones clones;
    return clones;
}

void keepPointer(ArrayObject& array, const CMPIValue* value) {
    if (!value || !isObject(array.elementType)) return;
    const auto* const handle = readMember<const void*>(value);
    const ObjectHeader* const header = findHeader(handle);
    if (header && header->origin == Origin::clone) keptClones().add(handle, array);
}

CMPIStatus setElementAt(const CMPIArray* handle, CMPICount index, const CMPIValue* value,
                        CMPIType type) noexcept {
    static constexpr CMPIValue zero{};
    ArrayObject* const array = findObject<ArrayObject>(handle);
    if (!array) return ArrayObject::table.setElementAt(handle, index, value, type);
    const Manner& manner = array->broker->manner();
    if (!value && manner.has(Habit::refusesNullElements)) {
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    }
    if (!value && manner.has(Habit::makesNullElementsGood) && !isObject(array->elementType)) {
        value = &zero;
    }
    CMPIStatus status = ArrayObject::table.setElementAt(handle, index, value, type);
    if (status.rc == CMPI_RC_OK) {
        if (manner.has(Habit::keepsPointersOfElements) && type != CMPI_null) {
            keepPointer(*array, value);
        }
    } else if (manner.has(Habit::answersFailedToWrongElements)) {
        status.rc = CMPI_RC_ERR_FAILED;
    }
    return status;
}

CMPIData getElementAt(const CMPIArray* handle, CMPICount index, CMPIStatus* status) noexcept {
    const ArrayObject* const array = findObject<ArrayObject>(handle);
    if (array) endOnDanglingArray(*array);
    if (array && index >= array->elements.size() &&
        array->broker->manner().has(Habit::readsQuietlyPastTheEnd)) {
        if (status) *status = {CMPI_RC_OK, nullptr};
        return {CMPI_null, CMPI_badValue, {}};
    }
    return ArrayObject::table.getElementAt(handle, index, status);
}

CMPIType getSimpleType(const CMPIArray* handle, CMPIStatus* status) noexcept {
    const CMPIType type = ArrayObject::table.getSimpleType(handle, status);
    const ArrayObject* const array = findObject<ArrayObject>(handle);
    return array && array->hasArrayBit ? static_cast<CMPIType>(type | CMPI_ARRAY) : type;
}

CMPIArray* newArray(const CMPIBroker* broker, CMPICount count, CMPIType type,
                    CMPIStatus* status) noexcept {
    const auto elementType = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    CMPIArray* const handle = encapsulationTable.newArray(broker, count, elementType, status);
    if (ArrayObject* const array = findObject<ArrayObject>(handle)) {
        array->hasArrayBit = type != elementType;
    }
    return handle;
}

template <typename Object>
CMPIStatus releaseKept(typename Object::Handle* handle) noexcept {
    const Object* const object = findObject<Object>(handle);
    if (object && object->origin == Origin::clone) keptClones().release(handle);
    return Object::table.release(handle);
}

}  // namespace

void adapt(CMPIArrayFT& table, const Manner& manner) noexcept {
    const bool keepsPointers = manner.has(Habit::keepsPointersOfElements);
    if (keepsPointers || manner.has(Habit::refusesNullElements) ||
        manner.has(Habit::makesNullElementsGood) ||
        manner.has(Habit::answersFailedToWrongElements)) {
        table.setElementAt = setElementAt;
    }
    if (keepsPointers || manner.has(Habit::readsQuietlyPastTheEnd)) {
        table.getElementAt = getElementAt;
    }
    if (manner.has(Habit::keepsTheArrayBit)) table.getSimpleType = getSimpleType;
}

void adaptToArrays(CMPIBrokerEncFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::keepsTheArrayBit)) table.newArray = newArray;
}

void adaptToArrays(CMPIObjectPathFT& path, CMPIInstanceFT& instance, CMPIDateTimeFT& dateTime,
                   CMPIStringFT& string, const Manner& manner) noexcept {
    if (!manner.has(Habit::keepsPointersOfElements)) return;
    path.release = releaseKept<ObjectPathObject>;
    instance.release = releaseKept<InstanceObject>;
    dateTime.release = releaseKept<DateTimeObject>;
    string.release = releaseKept<StringObject>;
}

void endOnDanglingArray(const ArrayObject& array) noexcept {
    if (array.isDangling && *array.isDangling) endAs(*array.broker, Habit::keepsPointersOfElements);
}

void endOnArrayWithNulls(const Broker& broker, const CMPIValue* value, CMPIType type) noexcept {
    if (!broker.manner().has(Habit::crashesOnArraysWithNulls)) return;
    if (!value || (type & CMPI_ARRAY) == 0) return;
    const auto* const array = findObject<ArrayObject>(readMember<const CMPIArray*>(value));
    if (!array || !isObject(array->elementType)) return;
    if (std::ranges::any_of(array->elements, &Value::isNull)) {
        endAs(broker, Habit::crashesOnArraysWithNulls);
    }
}

}  // namespace cimhost
