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

/// True for the return codes of CMPI that are status codes of CIM too, by the same numbers.
bool isCimCode(int returnCode) noexcept;

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

/// What a handle stands for, or nullptr.
template <typename Subject, typename Handle>
Subject* subjectOf(const Handle* handle) noexcept {
    if constexpr (std::is_same_v<Subject, const Broker>) {
        return Broker::find(handle);
    } else {
        return findObject<Subject>(handle);
    }
}

inline const Broker& brokerOf(const Broker& broker) noexcept { return broker; }
inline const Broker& brokerOf(const ObjectHeader& object) noexcept { return *object.broker; }

template <typename Work, typename Subject>
auto perform(Work& work, Subject& subject, CMPIrc& code) {
    if constexpr (std::is_invocable_v<Work&, Subject&, CMPIrc&>) {
        return work(subject, code);
    } else {
        return work(subject);
    }
}

/// A table function of a broker or, with the name of its type, of an object: runs `work(subject)`
/// and returns its result, or a zeroed one when it throws. A work that takes a code too may set it
/// instead of throwing where a failure is nothing unusual.
template <typename Subject = const Broker, typename Handle, typename Work>
auto enter(const Handle* handle, CMPIStatus* status, Work&& work) noexcept {
    CMPIrc code = CMPI_RC_OK;
    Subject* const subject = subjectOf<Subject>(handle);
    using Result = decltype(perform(work, *subject, code));
    if (!subject) {
        answer(status, {CMPI_RC_ERR_INVALID_HANDLE, nullptr});
        return Result{};
    }
    try {
        Result result = perform(work, *subject, code);
        answer(status, {code, nullptr});
        return result;
    } catch (...) {
        answer(status, statusOfException(brokerOf(*subject)));
        return Result{};
    }
}

/// The same for functions that return their status.
template <typename Subject = const Broker, typename Handle, typename Work>
CMPIStatus enter(const Handle* handle, Work&& work) noexcept {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    enter<Subject>(handle, &status, [&](Subject& subject, CMPIrc& code) {
        perform(work, subject, code);
        return 0;
    });
    return status;
}

/// `clone` of the objects that their copy constructor duplicates.
template <typename Object>
typename Object::Handle* cloneObject(const typename Object::Handle* handle,
                                     CMPIStatus* status) noexcept {
    return enter<Object>(handle, status, [](Object& object) -> typename Object::Handle* {
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
