#include "toolkit/StatusProperties.h"

#include "tests/support/TestBroker.h"
#include "toolkit/LocalPaths.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

struct StatusPropertiesTest : testing::Test {
    TestBroker host;
    CmpiCpp::CmpiInstance instance =
        CmpiCpp::makeCmpiInstance(host.broker(), PYL::makeLocalPath("PYL_Thing"));
};

TEST_F(StatusPropertiesTest, TellTheStatusAndItsHealth) {
    PYL::setStatus(instance, PYL::statusDegraded);
    EXPECT_EQ(instance.str(), "instance of PYL_Thing {OperationalStatus = {3}; HealthState = 10;}");
    EXPECT_EQ(instance.getProperty("OperationalStatus").getType(), CMPI_uint16);
    EXPECT_EQ(instance.getProperty("HealthState").getType(), CMPI_uint16);
}

TEST_F(StatusPropertiesTest, TellTheStatusInWordsToo) {
    PYL::setDescribedStatus(instance, PYL::statusOK);
    EXPECT_EQ(instance.str(),
              "instance of PYL_Thing {OperationalStatus = {2}; "
              "StatusDescriptions = {\"OK\"}; HealthState = 5;}");
}

TEST_F(StatusPropertiesTest, TellTheStatusOfAGroup) {
    PYL::setGroupStatus(instance, PYL::statusError);
    EXPECT_EQ(instance.str(),
              "instance of PYL_Thing {GroupOperationalStatus = {6}; HealthState = 20;}");
}

TEST_F(StatusPropertiesTest, AreTheWorstOfTheParts) {
    EXPECT_EQ(PYL::worstStatus(std::vector<PYL::operationalStatus>()), PYL::statusUnknown);
    EXPECT_EQ(PYL::worstStatus(std::array{PYL::statusOK, PYL::statusError, PYL::statusDegraded}),
              PYL::statusError);
    struct Part {
        PYL::operationalStatus status;
    };
    EXPECT_EQ(
        PYL::worstStatus(std::array{Part{PYL::statusOK}, Part{PYL::statusStopped}}, &Part::status),
        PYL::statusStopped);
}

}  // namespace
