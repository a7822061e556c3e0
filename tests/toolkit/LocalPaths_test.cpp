#include "toolkit/LocalPaths.h"

#include "cmpicpp/CmpiData.h"
#include "common/PYLUtil.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/common/Failures.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

namespace {

struct LocalPathsTest : testing::Test {
    TestBroker host;
};

TEST_F(LocalPathsTest, NameHostNamespaceClassAndKeysInOrder) {
    const std::string name = "server's";
    EXPECT_EQ(PYL::makeLocalPath("PYL_Thing").str(), "//server-1/root/ktq:PYL_Thing");
    EXPECT_EQ(PYL::makeLocalPath("PYL_Thing",
                                 {{"Name", name}, {"Tag", "a" + name}, {"Slot", 2U}, {"Hot", true}})
                  .str(),
              host.path("PYL_Thing",
                        {{"Name", "server's"}, {"Tag", "aserver's"}, {"Slot", 2U}, {"Hot", true}})
                  .str());
}

TEST_F(LocalPathsTest, StandInAnotherNamespaceWhereToldTo) {
    EXPECT_EQ(PYL::makeLocalPath("PYL_Thing", {{"Id", "1"}}, "interop").str(),
              "//server-1/interop:PYL_Thing.Id=\"1\"");
}

TEST_F(LocalPathsTest, HaveOneIdentifierOfClassAndSuffix) {
    EXPECT_EQ(PYL::makeInstanceIdPath("PYL_Thing").str(),
              "//server-1/root/ktq:PYL_Thing.InstanceID=\"KTQ:PYL_Thing:1\"");
    EXPECT_EQ(PYL::makeInstanceIdPath("PYL_Thing", "PYL_Fan").getKey("InstanceID").asString(),
              "KTQ:PYL_Thing:PYL_Fan");
    EXPECT_EQ(PYL::makeInstanceIdPath("PYL_Thing", "").getKey("InstanceID").asString(),
              "KTQ:PYL_Thing");
}

TEST_F(LocalPathsTest, HaveTheFourKeysOfADevice) {
    EXPECT_EQ(PYL::makeDevicePath("PYL_Thing", "left").str(),
              host.path("PYL_Thing", {{"CreationClassName", "PYL_Thing"},
                                      {"SystemCreationClassName", "PYL_ComputerSystem"},
                                      {"SystemName", "server-1"},
                                      {"DeviceID", "left"}})
                  .str());
}

TEST_F(LocalPathsTest, ReplaceTheHostAndNothingElse) {
    const auto path = host.path("root/other", "PYL_Thing", "a", "10.0.0.1");
    EXPECT_EQ(PYL::onThisHost(path).str(), "//server-1/root/other:PYL_Thing.Id=\"a\"");
    EXPECT_EQ(path.getHost().str(), "10.0.0.1");
    EXPECT_EQ(outcomeOf([] { PYL::onThisHost({}); }).substr(0, 7), "status ");
}

TEST_F(LocalPathsTest, FollowTheHostsName) {
    const cimtest::HostNameIs renamed("server-2");
    EXPECT_EQ(PYL::makeLocalPath("PYL_Thing").str(), "//server-2/root/ktq:PYL_Thing");
}

TEST_F(LocalPathsTest, NeedABroker) {
    EXPECT_EQ(PYL::localBroker().toCMPI(), PYL::PYLUtil::getBroker());
    PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(nullptr));
    EXPECT_EQ(outcomeOf([] { PYL::makeLocalPath("PYL_Thing"); }).substr(0, 10), "status 60 ");
}

}  // namespace
