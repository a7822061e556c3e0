#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiStatus.h"

#include <string>
#include <string_view>

/// How the wrapper calls the broker: every failure is CmpiStatus. Not installed.
namespace CmpiCpp {

/// Throws the exception in flight as CmpiStatus CMPI_RC_ERR_FAILED. For catch clauses only.
[[noreturn]] void throwForeign();

/// Calls a slot. Object managers written in C++ may let anything out of their tables, also what is
/// no std::exception: it becomes CmpiStatus, like their other failures.
template <typename Result, typename... Parameters, typename... Arguments>
Result call(Result (*slot)(Parameters...), Arguments... arguments) {
    try {
        return slot(arguments...);
    } catch (...) {
        throwForeign();
    }
}

/// Calls a slot that returns its status, and throws what that says.
template <typename... Parameters, typename... Arguments>
void tell(CMPIStatus (*slot)(Parameters...), Arguments... arguments) {
    check(call(slot, arguments...));
}

/// Calls a slot whose last argument is the status, and throws what that says.
template <typename Result, typename... Parameters, typename... Arguments>
Result ask(Result (*slot)(Parameters...), Arguments... arguments) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const Result result = call(slot, arguments..., &status);
    check(status);
    return result;
}

[[noreturn]] void throwNothingMade(const char* what);
[[noreturn]] void throwNoBroker();
[[noreturn]] void throwNoContext();
[[noreturn]] void throwBadValue();
[[noreturn]] void throwAbsent(const char* name);
[[noreturn]] void throwAbsent(unsigned int index);

/// The object that the broker made. Success without an object is CMPI_RC_ERR_FAILED.
template <typename T>
T* made(T* object, const char* what) {
    if (!object) [[unlikely]] {
        throwNothingMade(what);
    }
    return object;
}

/// The broker; none is CMPI_RC_ERR_INVALID_HANDLE.
inline const CMPIBroker* required(const CMPIBroker* broker) {
    if (!broker) [[unlikely]] {
        throwNoBroker();
    }
    return broker;
}

/// The context of an up-call; none is CMPI_RC_ERR_INVALID_HANDLE: hosts read it without a look.
inline const CMPIContext* required(const CMPIContext* context) {
    if (!context) [[unlikely]] {
        throwNoContext();
    }
    return context;
}

/// The characters of a string of the broker, borrowed from it and ended by a zero; "" for nullptr.
inline const char* charsOf(const CMPIString* string) {
    const char* const text = !string ? nullptr : ask(string->ft->getCharPtr, string);
    return !text ? "" : text;
}

/// The same with their number.
inline std::string_view textOf(const CMPIString* string) { return charsOf(string); }

/// The same where a text that cannot be read is as good as none.
const char* textOrEmpty(const CMPIString* string) noexcept;

/// Text that came through the C interface as an argument; empty for nullptr.
inline std::string toString(const char* text) { return !text ? std::string() : std::string(text); }

/// Reads an item that may be missing, and tells whether it is there. Brokers tell a missing one by
/// two codes or by its state.
template <typename Getter, typename... Arguments>
bool find(CMPIData& item, Getter getter, Arguments... arguments) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    item = call(getter, arguments..., &status);
    if (status.rc == CMPI_RC_ERR_NO_SUCH_PROPERTY || status.rc == CMPI_RC_ERR_NOT_FOUND) {
        return false;
    }
    check(status);
    return (item.state & CMPI_notFound) == 0;
}

/// Calls `visit(name, key)` for each key that the path has, until it says false; false then. Some
/// brokers count the keys of the class, set or not: those that are not set are left out.
template <typename Visit>
bool forEachKey(const CMPIObjectPath* path, Visit visit) {
    const CMPICount count = ask(path->ft->getKeyCount, path);
    for (CMPICount index = 0; index < count; ++index) {
        CMPIString* name = nullptr;
        CMPIData key;
        if (find(key, path->ft->getKeyAt, path, index, &name) && !visit(name, key)) return false;
    }
    return true;
}

/// How many keys the path has.
CMPICount keyCount(const CMPIObjectPath* path);

/// An item that was read by name or index. Brokers before 2.1 may mark a missing one by its state
/// and return CMPI_RC_OK.
template <typename Key>
const CMPIData& present(const CMPIData& data, Key key) {
    if ((data.state & CMPI_notFound) != 0) [[unlikely]] {
        throwAbsent(key);
    }
    return data;
}

}  // namespace CmpiCpp
