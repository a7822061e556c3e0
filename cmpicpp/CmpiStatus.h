#pragma once

#include "cmpi/cmpidt.h"
#include "pylcommon_export.h"

#include <stdexcept>
#include <string>

namespace CmpiCpp {

/// The failure of a CMPI operation: a return code (CMPI 2.1, CMPIrc) and a text.
///
/// The wrapper throws it for every failing CMPI call, providers throw it to refuse a request, and
/// the adapter turns it into the CMPIStatus that the object manager sees. what() is the text alone.
class PYL_EXPORT CmpiStatus : public std::runtime_error {
public:
    /// The client sees both; `message` says what was wrong, and with what.
    explicit CmpiStatus(CMPIrc rc, const std::string& message = {})
        : std::runtime_error(message), _rc(rc) {}

    /// From a status of the C interface; its message, if any, is copied.
    explicit CmpiStatus(const CMPIStatus& status);

    /// The code, one of the standard's or not.
    CMPIrc rc() const noexcept { return _rc; }
    /// The text alone, as what().
    std::string message() const { return what(); }

    /// "CMPI_RC_ERR_NOT_FOUND (6): no such fan"; without a text it ends after the parenthesis.
    /// A code outside the standard's list is "CMPI_RC (77)".
    std::string str() const;

private:
    CMPIrc _rc;
};

/// The standard's name of a return code, or nullptr for a number outside its list.
const PYL_EXPORT char* rcName(CMPIrc rc) noexcept;

/// Throws the status as CmpiStatus. By value: a status that a call returned stays in its registers.
[[noreturn]] PYL_EXPORT void throwStatus(CMPIStatus status);

/// Throws CmpiStatus unless the code is CMPI_RC_OK. The message is read at once, since it dies with
/// the call.
inline void check(const CMPIStatus& status) {
    if (status.rc != CMPI_RC_OK) [[unlikely]] {
        throwStatus(status);
    }
}

}  // namespace CmpiCpp
