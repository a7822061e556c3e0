#pragma once

#include "tests/support/BrokerFixture.h"

namespace cimhost {

/// A broker of one manner and the scope of one provider call, whatever PYL_MANNER says.
struct MannerCall {
    explicit MannerCall(const char* manner)
        : realBroker(repository, log, fillUpCalls, Manner(manner)) {}

    const CMPIBroker* broker() const { return realBroker.handle(); }
    const CMPIBrokerEncFT& eft() const { return *broker()->eft; }
    CMPIObjectPath* newPath(const char* className = "Test_Base") {
        return eft().newObjectPath(broker(), "root/test", className, &status);
    }
    CMPIInstance* newInstance(const char* className = "Test_Base") {
        return eft().newInstance(broker(), newPath(className), &status);
    }

    Repository repository = testRepository();
    CapturingLog log;
    Broker realBroker;
    CallScope scope;
    CMPIStatus status{CMPI_RC_OK, nullptr};
};

}  // namespace cimhost
