#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/objects/CloneCount.h"
#include "cimhost/objects/Object.h"

#include <string_view>
#include <type_traits>
#include <utility>

/// The one body that every table function has: it finds what the handle stands for, runs the work
/// and turns whatever is thrown into a status. Nothing leaves it but by return.
namespace cimhost {

/// A failure that CIM has no status for, or that needs no words.
struct Failure {
    CMPIrc code;
};

/// Throws the failure of a result or an object that was handed something.
inline void requireTaken(const CMPIStatus& status) {
    if (status.rc != CMPI_RC_OK) throw Failure{status.rc};
}

/// The status for the exception in flight, with its text as a string of the current scope.
CMPIStatus statusOfException(const Broker& broker) noexcept;

/// The text, or Failure CMPI_RC_ERR_INVALID_PARAMETER for a null pointer.
inline std::string_view required(const char* text) {
    if (!text) throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
    return text;
}

/// The object behind the handle, or Failure CMPI_RC_ERR_INVALID_HANDLE.
template <typename Object>
Object& requiredObject(const typename Object::Handle* handle) {
    if (Object* const object = findObject<Object>(handle)) return *object;
    throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
}

inline void answer(CMPIStatus* status, CMPIStatus outcome) noexcept {
    if (status) *status = outcome;
}

/// Runs `work(code)` and returns its result, or a zeroed one when it throws. The work may set
/// `code` instead of throwing where a failure is nothing unusual.
template <typename Work>
auto run(const Broker& broker, CMPIStatus* status, Work&& work) noexcept
    -> std::invoke_result_t<Work, CMPIrc&> {
    using Result = std::invoke_result_t<Work, CMPIrc&>;
    try {
        CMPIrc code = CMPI_RC_OK;
        Result result = work(code);
        answer(status, {code, nullptr});
        return result;
    } catch (...) {
        answer(status, statusOfException(broker));
        return Result{};
    }
}

/// A table function of a broker.
template <typename Work>
auto enter(const CMPIBroker* handle, CMPIStatus* status, Work&& work) noexcept
    -> std::invoke_result_t<Work, const Broker&, CMPIrc&> {
    const Broker* const broker = Broker::find(handle);
    if (!broker) {
        answer(status, {CMPI_RC_ERR_INVALID_HANDLE, nullptr});
        return {};
    }
    return run(*broker, status, [&](CMPIrc& code) { return work(*broker, code); });
}

/// A table function of an object.
template <typename Object, typename Work>
auto enter(const typename Object::Handle* handle, CMPIStatus* status, Work&& work) noexcept
    -> std::invoke_result_t<Work, Object&, CMPIrc&> {
    Object* const object = findObject<Object>(handle);
    if (!object) {
        answer(status, {CMPI_RC_ERR_INVALID_HANDLE, nullptr});
        return {};
    }
    return run(*object->broker, status, [&](CMPIrc& code) { return work(*object, code); });
}

/// The same for functions that return their status.
template <typename Work>
CMPIStatus enter(const CMPIBroker* handle, Work&& work) noexcept {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    enter(handle, &status, [&](const Broker& broker, CMPIrc& code) {
        work(broker, code);
        return 0;
    });
    return status;
}

template <typename Object, typename Work>
CMPIStatus enter(const typename Object::Handle* handle, Work&& work) noexcept {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    enter<Object>(handle, &status, [&](Object& object, CMPIrc& code) {
        work(object, code);
        return 0;
    });
    return status;
}

/// `clone` of the objects that their copy constructor duplicates.
template <typename Object>
typename Object::Handle* cloneObject(const typename Object::Handle* handle,
                                     CMPIStatus* status) noexcept {
    return enter<Object>(handle, status, [](Object& object, CMPIrc&) -> typename Object::Handle* {
        auto& clone = makeClone<Object>(*object.broker, 0, std::as_const(object));
        CloneCount::made();
        return &clone;
    });
}

/// Logs that a provider tried to end an object it may not end: once for each library that does so,
/// function and kind, since what is wrong in a provider is wrong in every call. `caller` is an
/// address in the library.
void logWrongEnd(const Broker& broker, const void* caller, std::string_view function,
                 ObjectKind kind) noexcept;

/// `release`: ends a clone. Anything else stays, is logged and CMPI_RC_ERR_INVALID_HANDLE.
template <typename Object>
CMPIStatus releaseObject(typename Object::Handle* handle) noexcept {
    const void* const caller = __builtin_return_address(0);
    return enter<Object>(handle, [caller](Object& object, CMPIrc& code) {
        if (object.origin == Origin::clone) {
            endObject(object);
            CloneCount::released();
        } else {
            logWrongEnd(*object.broker, caller, "release", Object::kindOfObject);
            code = CMPI_RC_ERR_INVALID_HANDLE;
        }
    });
}

}  // namespace cimhost
