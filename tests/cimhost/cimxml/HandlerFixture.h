#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "tests/cimhost/cimxml/Requests.h"
#include "tests/cimhost/cimxml/TestProvider.h"
#include "tests/support/BrokerFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace cimhost {

/// A handler over the test schema. TEST_Fan (f1, f2) has a provider; TEST_Pump (p1, p2), TEST_Only
/// and TEST_Link (p1 to p2) have static instances; TEST_Keys has nothing.
class HandlerTest : public testing::Test {
protected:
    HandlerTest();

    const CimXmlHandler& handler() const { return _handler; }
    RecordingReply handle(const TestRequest& request) const;

    /// What stands inside IMETHODRESPONSE or METHODRESPONSE, after all that every reply must be was
    /// checked.
    std::string answer(const TestRequest& request) const;

    /// "<code>: <description>" of the ERROR in the answer, with its entities resolved.
    std::string error(const TestRequest& request) const;

    /// The code alone.
    int errorCode(const TestRequest& request) const;

    /// A TEST_Fan.
    static Instance fan(std::string_view id);

private:
protected:
    Repository repository;

private:
    CapturingLog _log;
    Broker _broker;

protected:
    TestProvider provider;

private:
    ModuleHost _modules;
    Operations _operations;
    CimXmlHandler _handler;
};

}  // namespace cimhost
