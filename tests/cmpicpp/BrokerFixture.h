#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiStatus.h"
#include "tests/support/BrokerFixture.h"

#include <list>
#include <string>
#include <string_view>

namespace CmpiCpp::test {

/// The broker of all tests, as the C++ values see it.
class BrokerTest : public cimhost::BrokerTest {
protected:
    BrokerTest() { _declareFor(realBroker.manner()); }

    void TearDown() override { EXPECT_TRUE(log.lines().empty()) << "the broker has complained"; }

    const CMPIBroker* handle() const { return realBroker.handle(); }
    CmpiBroker broker() const { return CmpiBroker(handle()); }

    /// Another broker, with the manner of this host, for the same call.
    const cimhost::Broker& brokerOf(std::string_view manner) {
        _declareFor(cimhost::Manner(manner));
        return _others.emplace_back(repository, log, cimhost::fillUpCalls, cimhost::Manner(manner));
    }
    CmpiBroker like(std::string_view manner) { return CmpiBroker(brokerOf(manner).handle()); }

    CmpiObjectPath path() const {
        CmpiObjectPath made = makeCmpiObjectPath(broker(), "root/ktq", "PYL_Fan");
        made.addKey("DeviceID", "1");
        made.addKey("Slot", 2U);
        return made;
    }

private:
    // A class without properties takes all that is set where the host wants to know the class.
    void _declareFor(const cimhost::Manner& manner) {
        if (!manner.has(cimhost::Habit::makesPathlessInstances)) return;
        for (const char* name : {"PYL_Fan", "C", "First", "Second"}) {
            cimhost::Class definition;
            definition.name = name;
            for (const char* space : {"root/ktq", "n"}) {
                cimhost::NameSpace& nameSpace = repository.make(space);
                if (!nameSpace.findClass(name)) nameSpace.addClass(definition);
            }
        }
    }

    std::list<cimhost::Broker> _others;
};

/// The status that the action throws, or CMPI_RC_OK.
template <typename Action>
CMPIrc codeOf(Action&& action) {
    try {
        action();
    } catch (const CmpiStatus& status) {
        return status.rc();
    }
    return CMPI_RC_OK;
}

/// The text of the status that the action throws; a note when it throws none.
template <typename Action>
std::string messageOf(Action&& action) {
    try {
        action();
    } catch (const CmpiStatus& status) {
        return status.message();
    }
    return "(nothing was thrown)";
}

}  // namespace CmpiCpp::test
