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
    const int number = static_cast<int>(code);
    return isCimCode(number) ? static_cast<CMPIrc>(number) : CMPI_RC_ERR_FAILED;
}

}  // namespace

bool isCimCode(int returnCode) noexcept {
    return (returnCode >= 1 && returnCode <= 17) ||
           returnCode == CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED ||
           returnCode == CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED;
}

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
