#include "cmpicpp/CmpiMBService.h"
#include "tests/testing/Ports.h"

namespace {

using cimtest::failureOf;
using cimtest::FaultyBroker;

struct Faults : ports::Fixture {
    Faults() { serve(); }
};

TEST_F(Faults, FailTheNthCallOfAnObject) {
    host.faults().failCall("CMPIResultFT.returnObjectPath", 1, FaultyBroker::Fault::status,
                           CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(failureOf([&] { host.names("ACME_Port"); }).substr(0, 2), "2 ");
    EXPECT_TRUE(host.faults().hasFailed());
    EXPECT_EQ(failureOf([&] { host.names("ACME_Port"); }), "");
}

TEST_F(Faults, FailTheNthUpCall) {
    std::vector<std::string> outcomes;
    provider->onRequest = [&](const CmpiCpp::CmpiContext& context) {
        const auto path = CmpiCpp::makeCmpiObjectPath(host.broker(), "root/other", "ACME_Fan");
        const CmpiCpp::CmpiMBService service(host.handle(), host.logger());
        try {
            service.enumInstanceNames(context, path);
            outcomes.push_back("passed");
        } catch (const CmpiCpp::CmpiStatus& status) {
            outcomes.push_back(std::to_string(status.rc()));
        }
    };
    host.readMofText(
        "class ACME_Fan { [Key] string Name; }; instance of ACME_Fan { Name = \"f\"; };",
        "root/other");
    host.faults().failCall("CMPIBrokerFT.enumerateInstanceNames", 2, FaultyBroker::Fault::status,
                           CMPI_RC_ERR_FAILED);
    for (int call = 0; call < 3; ++call) host.names("ACME_Port");
    EXPECT_EQ(outcomes, (std::vector<std::string>{"passed", "1", "passed"}));
}

TEST_F(Faults, FailTheNthAllocationOfTheThread) {
    host.names("ACME_Port");
    int failures = 0;
    for (int nth = 1; nth == 1 || cimtest::allocationHasFailed(); ++nth) {
        const cimtest::FailingAllocation failing(nth, false);
        try {
            host.names("ACME_Port");
        } catch (const std::exception&) {
            ++failures;
        }
    }
    EXPECT_GT(failures, 0);
    EXPECT_EQ(host.names("ACME_Port").size(), 1U);
}

TEST_F(Faults, ChangeTheNameOfTheHost) {
    const cimtest::HostNameIs renamed("server-2");
    EXPECT_EQ(ports::Thing::path("ACME_Port", "a").getHost().str(), "server-2");
}

TEST(FaultsOfAModule, ReachItThroughItsCEntryPoints) {
    cimtest::Host host("root/test");
    host.readMofText("class TST_Thing { [Key] string Name; uint32 Number; };");
    host.loadText("TST_Thing root/test InstanceGuest instanceGuest instance", GUEST_FOLDER);
    host.names("TST_Thing");
    host.faults().failCall("CMPIResultFT.returnDone", 1, FaultyBroker::Fault::status,
                           CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(failureOf([&] { host.names("TST_Thing"); }).substr(0, 2), "2 ");
}

}  // namespace
