#pragma once

#include <stdexcept>
#include <string>

namespace cimhost {

/// The CIM status codes of DSP0200, 5.2.
enum class CimCode : int {
    failed = 1,
    accessDenied = 2,
    invalidNamespace = 3,
    invalidParameter = 4,
    invalidClass = 5,
    notFound = 6,
    notSupported = 7,
    classHasChildren = 8,
    classHasInstances = 9,
    invalidSuperclass = 10,
    alreadyExists = 11,
    noSuchProperty = 12,
    typeMismatch = 13,
    queryLanguageNotSupported = 14,
    invalidQuery = 15,
    methodNotAvailable = 16,
    methodNotFound = 17,
    invalidEnumerationContext = 21,
    serverLimitsExceeded = 27,
    serverIsShuttingDown = 28,
    queryFeatureNotSupported = 29,
};

/// A CIM operation's failure as the client sees it. what() is the description.
class CimError : public std::runtime_error {
public:
    CimError(CimCode code, const std::string& description)
        : std::runtime_error(description), _code(code) {}

    CimCode code() const noexcept { return _code; }

private:
    CimCode _code;
};

/// Fails with CIM_ERR_INVALID_PARAMETER.
[[noreturn]] void throwInvalidParameter(const std::string& description);

/// The standard's name of the code, such as "CIM_ERR_NOT_FOUND".
const char* codeName(CimCode code) noexcept;

}  // namespace cimhost
