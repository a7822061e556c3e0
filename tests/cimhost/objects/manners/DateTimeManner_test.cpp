#include "cimhost/objects/MannerTables.h"
#include "tests/support/MannerCall.h"

namespace cimhost {
namespace {

constexpr CMPIUint64 hundredMillionDays = 100000000ULL * 86400 * 1000000;

TEST(DateTimeManner, TakesMonthThirteen) {
    MannerCall call("sfcb");
    const char* const text = "20241301000000.000000+000";
    const CMPIDateTime* const date =
        call.eft().newDateTimeFromChars(call.broker(), text, &call.status);
    ASSERT_EQ(call.status, CMPI_RC_OK);
    EXPECT_EQ(textOf(date->ft->getStringFormat(date, nullptr)), text);
    EXPECT_EQ(call.eft().newDateTimeFromChars(call.broker(), "2024", &call.status), nullptr);
}

TEST(DateTimeManner, ThrowsAtIntervalsThatHaveNoText) {
    MannerCall call("openpegasus");
    EXPECT_THROW(call.eft().newDateTimeFromBinary(call.broker(), hundredMillionDays, true, nullptr),
                 HostException);
    EXPECT_NE(call.eft().newDateTimeFromBinary(call.broker(), 1, true, nullptr), nullptr);
}

TEST(DateTimeMannerDeathTest, EndsAtIntervalsThatHaveNoText) {
    MannerCall call("sfcb");
    EXPECT_DEATH(call.eft().newDateTimeFromBinary(call.broker(), hundredMillionDays, true, nullptr),
                 "");
}

}  // namespace
}  // namespace cimhost
