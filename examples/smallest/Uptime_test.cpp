#include <gtest/gtest.h>
#include <pylcommon/testing.h>

TEST(Uptime, IsOneInstanceThatHasItsSeconds) {
    cimtest::ProviderHost host("root/ktq", {"base/base.mof", "Uptime.mof"});
    host.load(PYL_MODULE_REGISTRATION, PYL_MODULE_FOLDER);
    const auto instances = host.enumerate("PYL_Uptime");
    ASSERT_EQ(instances.size(), 1U);
    EXPECT_TRUE(instances[0].has("Seconds"));
}
