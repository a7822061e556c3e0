#include "cimhost/modules/ProviderCall.h"

namespace cimhost {

CallNesting::CallNesting() {
    if (depth == limit) {
        throw CimError(CimCode::failed,
                       "provider calls are nested more than " + std::to_string(limit) + " deep");
    }
    ++depth;
}

void ProviderCall::_tellFailure(const RunningCall& running, const CMPIStatus& status) const {
    if (status.rc == CMPI_RC_OK || codeFromProvider(status.rc) != CimCode::failed) return;
    // A result that was not taken is the client's doing, mostly.
    if (failureOf(_result)) return;
    try {
        requireSuccess(status, running.asked().provider, _result);
    } catch (const CimError& error) {
        _tellFailure(running, error.what());
    }
}

void ProviderCall::_tellFailure(const RunningCall& running, const std::string& text) const {
    if (ToldElsewhere::here()) return;
    RunningCall::Words words;
    running.describe(words);
    words.blankControls();
    _broker.log().write(BrokerLog::Level::error, running.asked().provider,
                        std::string(words.view()) + ": " + text);
}

}  // namespace cimhost
