#include "cimhost/objects/DateTimeHandle.h"

#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

class DateTimeHandle : public BrokerTest {
protected:
    std::string text(const CMPIDateTime* dateTime) {
        return textOf(dateTime->ft->getStringFormat(dateTime, &status));
    }
    CMPIUint64 number(const CMPIDateTime* dateTime) {
        return dateTime->ft->getBinaryFormat(dateTime, &status);
    }
};

TEST_F(DateTimeHandle, OfNowIsBetweenTwoReadingsOfTheClock) {
    const auto before = static_cast<CMPIUint64>(std::time(nullptr)) * 1000000;
    const CMPIDateTime* const now = eft().newDateTime(broker(), &status);
    const auto after = (static_cast<CMPIUint64>(std::time(nullptr)) + 1) * 1000000;
    EXPECT_GE(number(now), before);
    EXPECT_LE(number(now), after);
    EXPECT_EQ(now->ft->isInterval(now, &status), 0);
    EXPECT_EQ(text(now).substr(21), "+000");
}

TEST_F(DateTimeHandle, GoesFromNumbersToTextAndBack) {
    const CMPIDateTime* const point =
        eft().newDateTimeFromBinary(broker(), 1709210096789012, 0, &status);
    EXPECT_EQ(text(point), "20240229123456.789012+000");
    EXPECT_EQ(number(point), 1709210096789012U);
    const CMPIDateTime* const interval =
        eft().newDateTimeFromBinary(broker(), 90123000004, 2, &status);
    EXPECT_EQ(text(interval), "00000001010203.000004:000");
    EXPECT_NE(interval->ft->isInterval(interval, &status), 0);
}

TEST_F(DateTimeHandle, KeepsItsTextAsItWasGiven) {
    const CMPIDateTime* const zone =
        eft().newDateTimeFromChars(broker(), "20240229123456.789012-300", &status);
    EXPECT_EQ(text(zone), "20240229123456.789012-300");
    EXPECT_EQ(number(zone), 1709228096789012U);
}

TEST_F(DateTimeHandle, IsNotMadeOfBadTextOrNumbers) {
    for (const char* const bad : {"", "yesterday", "20230229000000.000000+000",
                                  "20240231000000.000000+000", static_cast<const char*>(nullptr)}) {
        status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(eft().newDateTimeFromChars(broker(), bad, &status), nullptr);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
    }
    EXPECT_EQ(eft().newDateTimeFromBinary(broker(), ~CMPIUint64{0}, 0, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(DateTimeHandle, Before1970HasNoNumber) {
    const CMPIDateTime* const old =
        eft().newDateTimeFromChars(broker(), "19691231000000.000000+000", &status);
    EXPECT_EQ(number(old), 0U);
    EXPECT_EQ(status, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(text(old), "19691231000000.000000+000");
}

TEST_F(DateTimeHandle, ClonesOutliveTheOriginal) {
    CMPIDateTime* const point = eft().newDateTimeFromBinary(broker(), 1, 0, &status);
    CMPIDateTime* const copy = point->ft->clone(point, &status);
    mft().freeDateTime(broker(), point);
    EXPECT_EQ(number(copy), 1U);
    EXPECT_EQ(copy->ft->release(copy), CMPI_RC_OK);
}

TEST_F(DateTimeHandle, AnswersInvalidHandleForNullAndForeignHandles) {
    const CMPIDateTime* const point = eft().newDateTime(broker(), &status);
    CMPIDateTime foreign = foreignHandle(point);
    for (CMPIDateTime* const bad : {static_cast<CMPIDateTime*>(nullptr), &foreign}) {
        status = {CMPI_RC_OK, nullptr};
        EXPECT_EQ(point->ft->getBinaryFormat(bad, &status), 0U);
        EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
        EXPECT_EQ(point->ft->getStringFormat(bad, &status), nullptr);
        EXPECT_EQ(point->ft->isInterval(bad, &status), 0);
        EXPECT_EQ(point->ft->clone(bad, &status), nullptr);
        EXPECT_EQ(point->ft->release(bad), CMPI_RC_ERR_INVALID_HANDLE);
    }
}

}  // namespace
}  // namespace cimhost
