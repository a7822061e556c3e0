#include "cimhost/modules/ProviderStatus.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/Objects.h"

namespace cimhost {

CimCode codeFromProvider(int returnCode) noexcept {
    return isCimCode(returnCode) ? static_cast<CimCode>(returnCode) : CimCode::failed;
}

std::string messageOf(const CMPIStatus& status) {
    const CMPIString* const message = status.msg;
    if (!message || !message->ft || !message->ft->getCharPtr) return {};
    const char* const text = message->ft->getCharPtr(message, nullptr);
    return text ? text : std::string();
}

void requireSuccess(const CMPIStatus& status, std::string_view provider, const CMPIResult* result) {
    const int returnCode = static_cast<int>(status.rc);
    if (returnCode == CMPI_RC_OK) return;
    const CimCode code = codeFromProvider(returnCode);
    std::string description = messageOf(status);
    if (description.empty() && result) description = errorTextOf(result);
    if (!isCimCode(returnCode)) {
        if (!description.empty()) description += ": ";
        description += "provider " + std::string(provider) + " answered with CMPI return code " +
                       std::to_string(returnCode);
    }
    throw CimError(code, description.empty() ? codeName(code) : description);
}

void throwForeignException(std::string_view provider, const char* what) {
    throw CimError(CimCode::failed, "provider " + std::string(provider) + " threw " + what);
}

}  // namespace cimhost
