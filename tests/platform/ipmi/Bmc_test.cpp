#include "platform/ipmi/Bmc.h"

#include "testing/pylcommon/testing/FakeController.h"

#include <gtest/gtest.h>

namespace {

struct BmcTest : testing::Test {
    cimtest::FakeController controller;
    BmcHandle handle;
};

TEST_F(BmcTest, TellsWhoTheControllerIs) {
    controller.manufacturer = 0xF1234;
    ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    EXPECT_EQ(handle.deviceId.deviceId, 0x23);
    EXPECT_EQ(handle.deviceId.deviceRevision, 1);
    EXPECT_EQ(handle.deviceId.firmwareMajor, 9);
    EXPECT_EQ(handle.deviceId.firmwareMinor, 0x12);
    EXPECT_EQ(handle.deviceId.ipmiVersion, 2);
    EXPECT_EQ(handle.deviceId.manufacturerId, 0xF1234U);
    EXPECT_EQ(handle.deviceId.productId, 4098);
}

TEST_F(BmcTest, CutsTheManufacturerTo20Bits) {
    controller.manufacturer = 0xFF7ED9;
    ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    EXPECT_EQ(handle.deviceId.manufacturerId, 0xF7ED9U);
}

TEST_F(BmcTest, GivesTheSystemsGuidAsAUuid) {
    ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    EXPECT_TRUE(handle.hasSystemGuid);
    EXPECT_EQ(handle.systemGuid, "00010203-0405-0607-0809-0a0b0c0d0e0f");
}

TEST_F(BmcTest, TakesAControllerWithoutAGuidAsItIs) {
    controller.guid.clear();
    ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    EXPECT_FALSE(handle.hasSystemGuid);
    EXPECT_EQ(handle.systemGuid, "");
}

TEST_F(BmcTest, AsksNothingWhereNobodyWantsToKnow) {
    controller.onExchange = [](const auto&, auto&) { return std::optional<int>(EIO); };
    EXPECT_EQ(BMC_open(handle, 0, 0), 0);
    EXPECT_NE(handle.transport, nullptr);
}

TEST_F(BmcTest, SaysWhyItCannotBeOpened) {
    controller.openStatus = ENOENT;
    EXPECT_EQ(BMC_open(handle, 0, 1), ENOENT);
    EXPECT_EQ(BMC_strerror(ENOENT), "No such file or directory");
    EXPECT_EQ(handle.transport, nullptr);
}

TEST_F(BmcTest, IsClosedAfterAFailingQuestion) {
    for (const int failing : {0x01, 0x37}) {
        controller.onExchange = [&](const IpmiRequest& request, IpmiResponse&) {
            return request.command == failing ? std::optional(ETIMEDOUT) : std::nullopt;
        };
        EXPECT_EQ(BMC_open(handle, 0, 1), ETIMEDOUT);
        EXPECT_EQ(handle.transport, nullptr);
        EXPECT_EQ(controller.opened, controller.closed);
    }
}

TEST_F(BmcTest, RefusesAnIdentityOrAGuidThatIsCutShort) {
    for (const int cut : {0x01, 0x37}) {
        controller.onExchange = [&](const IpmiRequest& request,
                                    IpmiResponse& response) -> std::optional<int> {
            if (request.command != cut) return std::nullopt;
            response.data.assign(10, 0);
            return 0;
        };
        EXPECT_EQ(BMC_open(handle, 0, 1), EPROTO);
        EXPECT_EQ(controller.opened, controller.closed);
    }
}

TEST_F(BmcTest, PutsARefusalOfTheControllerIntoWords) {
    controller.onExchange = [](const IpmiRequest&, IpmiResponse& response) {
        response.completionCode = 0xD4;
        return std::optional(0);
    };
    const int status = BMC_open(handle, 0, 1);
    EXPECT_EQ(BMC_strerror(status), "the controller does not allow it (completion code D4h)");
    EXPECT_EQ(BMC_strerror(0x1000 | 0x80), "the controller refused (completion code 80h)");
}

TEST_F(BmcTest, StaysClosed) {
    ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    BMC_close(handle);
    EXPECT_EQ(controller.closed, 1);
    BMC_close(handle);
    EXPECT_EQ(controller.closed, 1);
}

TEST_F(BmcTest, MayBeOpenedAgain) {
    ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    controller.guid.clear();
    ASSERT_EQ(BMC_open(handle, 0, 1), 0);
    EXPECT_FALSE(handle.hasSystemGuid);
    EXPECT_EQ(controller.closed, 1);
}

TEST(BmcWithoutController, SaysThatThereIsNone) {
    BmcHandle handle;
    constexpr int noSuchDevice = 12345;
    EXPECT_EQ(BMC_open(handle, noSuchDevice, 1), ENOENT);
}

}  // namespace
