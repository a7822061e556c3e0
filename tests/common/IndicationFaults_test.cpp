// Every call of the broker and every allocation fails in turn while an indication is made: what
// comes of it is orderly, and nothing is left over.

#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/Failures.h"
#include "tests/common/IndicationFixture.h"
#include "tests/common/QuietResults.h"

#include <string>
#include <vector>

namespace {

using cimtest::FaultyBroker;

struct IndicationFaults : IndicationFixture {
    Logger quiet = silentLogger();
    PYL::KTAlertIndication full{quiet, "KT_AlertIndication", "root/ktq", 6};
    std::vector<CmpiCpp::CmpiInstance> endpoints;

    IndicationFaults() {
        everythingIsKnown();
        full.setEventSubCategory(1);
        full.setTemperatureVariables(65, 72.5F);
        full.setHWLogicalLocation("logical");
        full.setHWPhysicalLocation("physical");
        full.setHWFirmwareVersion("1.2");
        full.setHWManufacturer("KT");
        full.setHWSerialNumber("X");
        full.setHWPartNumber("P-1");
        full.setDeviceModel("model");
        full.setDeviceControllerLogicalLocation("slot 1");
        endpointIs(4096, "IPv4Address", "10.0.0.1");
        endpointIs(4097, "IPv6Address", "fe80::1");
        host.onEnumInstances = [this](const auto&) { return endpoints; };
    }

    void endpointIs(unsigned short kind, const char* property, const char* address) {
        auto endpoint = CmpiCpp::makeCmpiInstance(
            host.broker(),
            CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", "KT_IPProtocolEndpoint"));
        endpoint.setProperty("ProtocolIFType", kind);
        endpoint.setProperty(property, address);
        endpoints.push_back(endpoint);
    }
    void makeInstance() { full.getInstance(); }
    void readAddresses() {
        PYL::KTAlertIndication own(quiet, "KT_AlertIndication", "root/ktq", 2);
        own.setNetworkIPAddress(host.context());
    }

    using Action = void (IndicationFaults::*)();
    std::string outcomeOfAction(Action action) {
        const cimhost::CallScope scope;
        return outcomeOf([&] { (this->*action)(); });
    }

    /// Each call fails in each way, once and for ever. The failures that came out as a status.
    int walk(Action action) {
        FaultyBroker faulty(host.real());
        FaultyBroker::adopt(host.context().toCMPI());
        host.use(faulty.handle());
        int refused = 0;
        for (const auto& slot : FaultyBroker::slots()) {
            faulty.heal();
            EXPECT_EQ(outcomeOfAction(action), "none") << "before " << slot;
            const auto count = faulty.calls(slot);
            for (const auto fault : {FaultyBroker::Fault::status, FaultyBroker::Fault::null,
                                     FaultyBroker::Fault::wrongType}) {
                for (unsigned nth = 1; nth <= count; ++nth) {
                    faulty.failCall(slot, nth, fault);
                    const auto outcome = outcomeOfAction(action);
                    EXPECT_TRUE(outcome == "none" || outcome.starts_with("status "))
                        << outcome << " when call " << nth << " of " << slot << " fails";
                    EXPECT_EQ(sources.alive, 0) << slot;
                    refused += outcome == "none" ? 0 : 1;
                }
            }
        }
        faulty.heal();
        EXPECT_EQ(outcomeOfAction(action), "none");
        host.use(host.real());
        return refused;
    }

    /// Each allocation fails, once and with all that follow. The failures that were thrown.
    int starve(Action action) {
        int thrown = 0;
        for (const bool forever : {false, true}) {
            for (int nth = 1; nth == 1 || cimtest::allocationHasFailed(); ++nth) {
                const cimhost::CallScope scope;
                const auto outcome = outcomeOf([&] {
                    const cimtest::FailingAllocation failing(nth, forever);
                    (this->*action)();
                });
                EXPECT_TRUE(outcome == "none" || outcome == "bad_alloc" ||
                            outcome.starts_with("status "))
                    << outcome;
                EXPECT_EQ(sources.alive, 0);
                thrown += outcome == "none" ? 0 : 1;
            }
        }
        EXPECT_EQ(outcomeOfAction(action), "none");
        return thrown;
    }
};

TEST_F(IndicationFaults, OfTheBrokerAreStatusesAndLeaveNoSourceBehind) {
    EXPECT_GT(walk(&IndicationFaults::makeInstance), 100);
}

TEST_F(IndicationFaults, OfTheAddressesAreStatuses) {
    EXPECT_GT(walk(&IndicationFaults::readAddresses), 10);
}

TEST_F(IndicationFaults, OfMemoryAreOrderly) {
    EXPECT_GT(starve(&IndicationFaults::makeInstance), 100);
    EXPECT_GT(starve(&IndicationFaults::readAddresses), 10);
}

TEST_F(IndicationFaults, OfAMissingBrokerAreStatuses) {
    host.use(nullptr);
    for (const auto action : {&IndicationFaults::makeInstance, &IndicationFaults::readAddresses}) {
        EXPECT_TRUE(outcomeOfAction(action).starts_with("status "));
    }
    host.use(host.real());
}

}  // namespace
