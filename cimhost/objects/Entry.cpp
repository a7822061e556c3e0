#include "cimhost/objects/Entry.h"

#include "cimhost/objects/Description.h"
#include "cimhost/repository/CimError.h"

#include <dlfcn.h>

#include <exception>
#include <new>
#include <string>

namespace cimhost {

namespace {

CMPIStatus statusWith(const Broker& broker, CMPIrc code, std::string_view text) noexcept {
    try {
        return {code, makeString(broker, text)};
    } catch (const std::bad_alloc&) {
        return {code, nullptr};
    }
}

// CIM knows codes that CMPI has no name for.
CMPIrc cmpiCode(CimCode code) noexcept {
    switch (code) {
        case CimCode::invalidEnumerationContext:
        case CimCode::serverIsShuttingDown: return CMPI_RC_ERR_FAILED;
        case CimCode::failed:
        case CimCode::accessDenied:
        case CimCode::invalidNamespace:
        case CimCode::invalidParameter:
        case CimCode::invalidClass:
        case CimCode::notFound:
        case CimCode::notSupported:
        case CimCode::classHasChildren:
        case CimCode::classHasInstances:
        case CimCode::invalidSuperclass:
        case CimCode::alreadyExists:
        case CimCode::noSuchProperty:
        case CimCode::typeMismatch:
        case CimCode::queryLanguageNotSupported:
        case CimCode::invalidQuery:
        case CimCode::methodNotAvailable:
        case CimCode::methodNotFound:
        case CimCode::serverLimitsExceeded:
        case CimCode::queryFeatureNotSupported: return static_cast<CMPIrc>(code);
    }
    return CMPI_RC_ERR_FAILED;
}

}  // namespace

CMPIStatus statusOfException(const Broker& broker) noexcept {
    try {
        throw;
    } catch (const Failure& failure) {
        return {failure.code, nullptr};
    } catch (const CimError& error) {
        return statusWith(broker, cmpiCode(error.code()), error.what());
    } catch (const std::bad_alloc&) {
        return {CMPI_RC_ERR_FAILED, nullptr};
    } catch (const std::exception& error) {
        return statusWith(broker, CMPI_RC_ERR_FAILED, error.what());
    } catch (...) {
        return {CMPI_RC_ERR_FAILED, nullptr};
    }
}

void logWrongEnd(const Broker& broker, const void* caller, std::string_view function,
                 ObjectKind kind) noexcept {
    try {
        Dl_info library{};
        dladdr(caller, &library);
        if (!broker.isFirstWrongEnd(library.dli_fbase, function, kind)) return;
        const std::string text = std::string(function) + " on a " + std::string(typeNameOf(kind)) +
                                 " that it must not end: ignored";
        broker.log().write(BrokerLog::Level::warning, "broker", text);
    } catch (const std::bad_alloc&) {
        broker.log().write(BrokerLog::Level::warning, "broker", "an object was ended wrongly");
    }
}

}  // namespace cimhost
