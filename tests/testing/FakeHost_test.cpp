#include "platform/host/ComputerSystemMRA.h"
#include "platform/ipmi/Bmc.h"
#include "providers/fan/FanProvider.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

namespace {

using cimtest::arrayOf;

struct FakeHostTest : testing::Test {
    cimtest::FakeHost machine;
};

TEST_F(FakeHostTest, RunsAProviderAsOnItsServer) {
    machine.device("/sys/class/hwmon/hwmon4",
                   {{"name", "nct6775"}, {"fan1_input", "1200"}, {"fan1_fault", "1"}},
                   "nct6775.656");
    cimtest::ProviderHost host("root/ktq", {"base/base.mof", "PYL_Fan.mof"});
    host.serve(std::make_unique<fan::FanProvider>(host.broker(), host.logger()),
               {"PYL_Fan", "PYL_FanGroup"});
    const auto fans = host.enumerate("PYL_Fan");
    ASSERT_EQ(fans.size(), 1U);
    EXPECT_EQ(fans[0]["DeviceID"], "KTQ:PYL_Fan:nct6775.656:fan1");
    EXPECT_EQ(fans[0]["OperationalStatus"], arrayOf(6));
    machine.remove("/sys/class/hwmon/hwmon4/fan1_fault");
    EXPECT_EQ(host.enumerate("PYL_Fan").at(0)["OperationalStatus"], arrayOf(2));
}

TEST_F(FakeHostTest, HasTheTablesAndFilesThatATestGivesIt) {
    using cimtest::structure;
    machine.firmwareIs(cimtest::SmbiosImage(cimtest::concatenated(
        {structure(1, 1, {1, 2, 0, 3}, {"Acme", "Anvil 1", "S-42"}), cimtest::endOfTable()})));
    machine.write("/etc/os-release", "ID=debian\nVERSION_ID=\"12\"\nNAME=Acme OS\n");
    Logger log = hostedLogger("facts");
    const std::unique_ptr<ComputerSystemMRA> source(computerSystemMRAFactory(log));
    ComputerSystemMRADataObject data(log);
    ASSERT_EQ(source->getFirstData(ComputerSystemMRA::systemData, data), MRA_STATUS_SUCCESS);
    std::string text;
    EXPECT_EQ(data.getSystemProductName(text), MRA_STATUS_SUCCESS);
    EXPECT_EQ(text, "Anvil 1");
}

TEST_F(FakeHostTest, HasAControllerWhenATestPlugsOneIn) {
    BmcHandle handle;
    EXPECT_NE(BMC_open(handle, 0, 0), 0);
    machine.controller.openStatus = 0;
    EXPECT_EQ(BMC_open(handle, 0, 0), 0);
    EXPECT_EQ(machine.controller.opened, 1);
}

}  // namespace
