#include "cmpicpp/CmpiContext.h"

#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/DataKind.h"

namespace CmpiCpp {

namespace {

// Contexts of clean-up and indication calls may lack any entry, or be missing altogether. One that
// cannot be read is as good as missing.
CMPIData entry(const CMPIContext* context, const char* name) noexcept {
    CMPIData data{};
    try {
        if (context && find(data, context->ft->getEntry, context, name)) return data;
    } catch (const CmpiStatus&) {
    }
    return {CMPI_null, CMPI_nullValue, {}};
}

std::string textEntry(const CMPIContext* context, const char* name) {
    const CMPIData data = entry(context, name);
    const bool isText = data.type == CMPI_string && kindOf(data) == DataKind::text;
    return isText ? textOrEmpty(data.value.string) : "";
}

}  // namespace

std::string CmpiContext::nameSpace() const { return textEntry(_context, CMPIInitNameSpace); }

std::string CmpiContext::principal() const { return textEntry(_context, CMPIPrincipal); }

std::string CmpiContext::acceptLanguage() const { return textEntry(_context, CMPIAcceptLanguage); }

CMPIFlags CmpiContext::invocationFlags() const {
    const CMPIData data = entry(_context, CMPIInvocationFlags);
    if (kindOf(data) != DataKind::integer) return 0;
    return static_cast<CMPIFlags>(integerOf(data).bits);
}

}  // namespace CmpiCpp
