#include "cmpicpp/CmpiDateTime.h"

#include "tests/cmpicpp/BrokerFixture.h"

#include <chrono>
#include <limits>
#include <string>

namespace CmpiCpp {
namespace {

using std::chrono::microseconds;
using test::codeOf;
using test::messageOf;

class CmpiDateTimeTest : public test::BrokerTest {};

TEST_F(CmpiDateTimeTest, ReadsTheNotationOfAMoment) {
    const CmpiDateTime made = makeCmpiDateTime(broker(), "19700101010000.000001+060");
    EXPECT_EQ(made.microseconds(), microseconds(1));
    EXPECT_FALSE(made.isInterval());
    EXPECT_EQ(made.str(), "19700101010000.000001+060");
}

TEST_F(CmpiDateTimeTest, ReadsTheNotationOfAnInterval) {
    const CmpiDateTime made = makeCmpiDateTime(broker(), "00000001000000.000002:000");
    EXPECT_EQ(made.microseconds(), std::chrono::hours(24) + microseconds(2));
    EXPECT_TRUE(made.isInterval());
}

TEST_F(CmpiDateTimeTest, IsMadeOfMicroseconds) {
    const microseconds moment{1'700'000'000'123'456};
    EXPECT_EQ(makeCmpiDateTime(broker(), moment, false).microseconds(), moment);
    EXPECT_TRUE(makeCmpiDateTime(broker(), microseconds(5), true).isInterval());
    EXPECT_EQ(makeCmpiDateTime(broker(), microseconds(5), true).str(), "00000000000000.000005:000");
}

TEST_F(CmpiDateTimeTest, RefusesNegativeFigures) {
    EXPECT_EQ(messageOf([&] { makeCmpiDateTime(broker(), microseconds(-1), true); }),
              "A datetime of -1 microseconds");
    EXPECT_EQ(codeOf([&] { makeCmpiDateTime(broker(), microseconds::min(), false); }),
              CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(CmpiDateTimeTest, RefusesOtherText) {
    for (const char* const text :
         {"", "now", "20240131235959.123456+06", "20240131235959.123456+0600",
          "20240131235959,123456+060", "2024013123595x.123456+060", "20240131235959.123456 060",
          "20241331235959.123456+060"}) {
        EXPECT_EQ(codeOf([&] { makeCmpiDateTime(broker(), std::string(text)); }),
                  CMPI_RC_ERR_INVALID_PARAMETER)
            << text;
    }
    EXPECT_EQ(codeOf([&] {
                  makeCmpiDateTime(broker(), std::string("20240131235959.123456+060\0x", 27));
              }),
              CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(CmpiDateTimeTest, TellsThePresent) {
    const auto now = [] {
        return std::chrono::duration_cast<microseconds>(
            std::chrono::system_clock::now().time_since_epoch());
    };
    const microseconds before = now();
    const microseconds made = makeCmpiDateTime(broker()).microseconds();
    // Brokers may count whole seconds only.
    EXPECT_GE(made, before - std::chrono::seconds(1));
    EXPECT_LE(made, now());
}

TEST_F(CmpiDateTimeTest, MayBeKept) {
    const auto kept = [&] {
        const cimhost::CallScope call;
        return makeCmpiDateTime(broker(), microseconds(7), true).clone();
    }();
    EXPECT_EQ(kept.microseconds(), microseconds(7));
}

TEST_F(CmpiDateTimeTest, TheEmptyValueHasNoTime) {
    const CmpiDateTime none;
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.str(), "");
    EXPECT_EQ(codeOf([&] { none.microseconds(); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { none.isInterval(); }), CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(CmpiDateTimeTest, NeedsABroker) {
    const CmpiBroker none(nullptr);
    EXPECT_EQ(codeOf([&] { makeCmpiDateTime(none); }), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { makeCmpiDateTime(none, microseconds(1), true); }),
              CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(codeOf([&] { makeCmpiDateTime(none, "20240131235959.123456+060"); }),
              CMPI_RC_ERR_INVALID_HANDLE);
}

}  // namespace
}  // namespace CmpiCpp
