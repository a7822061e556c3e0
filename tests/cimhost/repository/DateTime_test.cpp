#include "cimhost/repository/DateTime.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(DateTime, KnowsPointsInTimeAndIntervals) {
    EXPECT_TRUE(isDateTime("19700101000000.000000+000"));
    EXPECT_TRUE(isDateTime("99991231235959.999999-720"));
    EXPECT_TRUE(isDateTime("99999999235959.999999:000"));
    EXPECT_FALSE(isInterval("19700101000000.000000+000"));
    EXPECT_TRUE(isInterval("00000000000000.000000:000"));
}

TEST(DateTime, KnowsTheCalendar) {
    EXPECT_TRUE(isDateTime("20240229000000.000000+000"));
    EXPECT_TRUE(isDateTime("20000229000000.000000+000"));
    EXPECT_TRUE(isDateTime("00000229000000.000000+000"));
    EXPECT_FALSE(isDateTime("20230229000000.000000+000"));
    EXPECT_FALSE(isDateTime("21000229000000.000000+000"));
    EXPECT_FALSE(isDateTime("20240231000000.000000+000"));
    EXPECT_FALSE(isDateTime("20240231******.******+000"));
    EXPECT_FALSE(isDateTime("20240431000000.000000+000"));
}

TEST(DateTime, TakesEveryFieldToItsLimits) {
    for (const char* const text :
         {"00000101000000.000000+000", "99991231235959.999999+999", "20240229235959.999999-300",
          "00000000000000.000000:000", "99999999235959.999999:000"}) {
        EXPECT_TRUE(isDateTime(text)) << text;
    }
}

TEST(DateTime, TakesAsterisksFromSomeFieldToTheEnd) {
    for (const char* const text :
         {"2024**********.******+000", "202401********.******+000", "20240101******.******+000",
          "2024010112****.******+000", "202401011200**.******+000", "20240101120000.******+000",
          "20240101120000.123***+000", "**************.******+000", "00000001132312.******:000",
          "00000001******.******:000", "0000000113****.******:000", "**************.******:000"}) {
        EXPECT_TRUE(isDateTime(text)) << text;
    }
}

TEST(DateTime, RefusesWhatIsNone) {
    for (const char* const text : {
             "",
             "20240229000000.000000+00",
             "20240229000000.000000+0000",
             "20240229000000,000000+000",
             "20240229000000.000000 000",
             "2024022900000x.000000+000",
             "20240229000000.000000+0x0",
             "20241329000000.000000+000",
             "20240001000000.000000+000",
             "20240132000000.000000+000",
             "20240029000000.000000+000",
             "20240200000000.000000+000",
             "20240229240000.000000+000",
             "20240229006000.000000+000",
             "20240229000060.000000+000",
             "00000001240000.000000:000",
             "00000001006000.000000:000",
             "00000001000060.000000:000",
             "00000001000000.000000:001",
             "00000001000000.000000:0*0",
             "-0000001000000.000000:000",
             " 0240229000000.000000+000",
         }) {
        EXPECT_FALSE(isDateTime(text)) << text;
        EXPECT_EQ(microsecondsOf(text), std::nullopt) << text;
    }
}

TEST(DateTime, CountsMicrosecondsFrom1970InUtc) {
    EXPECT_EQ(microsecondsOf("19700101000000.000001+000"), 1U);
    EXPECT_EQ(microsecondsOf("19700101010000.000000+060"), 0U);
    EXPECT_EQ(microsecondsOf("19691231230000.000000-060"), 0U);
    EXPECT_EQ(microsecondsOf("20240229123456.789012+000"), 1709210096789012U);
}

TEST(DateTime, CountsTheLengthOfIntervals) {
    EXPECT_EQ(microsecondsOf("00000001010203.000004:000"), 90123000004U);
    EXPECT_EQ(microsecondsOf("99999999235959.999999:000"), 8639999999999999999U);
}

TEST(DateTime, HasNoNumberBefore1970) {
    EXPECT_TRUE(isDateTime("19691231235959.999999+000"));
    EXPECT_EQ(microsecondsOf("19691231235959.999999+000"), std::nullopt);
    EXPECT_EQ(microsecondsOf("19700101000000.000000+001"), std::nullopt);
}

TEST(DateTime, TakesAsterisksForTheLeastValue) {
    EXPECT_EQ(microsecondsOf("20240229123456.******+000"), 1709210096000000U);
    EXPECT_EQ(microsecondsOf("20240229123456.789***+000"), 1709210096789000U);
    EXPECT_EQ(microsecondsOf("2024**********.******+000"), 1704067200000000U);
    EXPECT_EQ(microsecondsOf("00000001******.******:000"), 86400000000U);
    EXPECT_EQ(microsecondsOf("**************.******:000"), 0U);
}

TEST(DateTime, RefusesAsterisksInTheMiddle) {
    for (const char* const text :
         {"2024**29123456.789012+000", "20240229123456.7*9012+000", "202*0229123456.789012+000",
          "2024022912345*.******+000", "2024010*******.******+000", "202***********.******+000",
          "0000000*******.******:000", "0000****000000.******:000", "********000000.000000+000",
          "20240229123456.00*000+000", "********000000.000000:000", "20240229123456.000000*000",
          "20240229123456.789012+***", "20240229****56.******+000"}) {
        EXPECT_FALSE(isDateTime(text)) << text;
    }
}

TEST(DateTime, IsWrittenInUtc) {
    EXPECT_EQ(dateTimeOf(0, false), "19700101000000.000000+000");
    EXPECT_EQ(dateTimeOf(1709210096789012U, false), "20240229123456.789012+000");
    EXPECT_EQ(dateTimeOf(90123000004U, true), "00000001010203.000004:000");
    EXPECT_EQ(dateTimeOf(8639999999999999999U, true), "99999999235959.999999:000");
}

TEST(DateTime, IsNotWrittenBeyondItsDigits) {
    EXPECT_EQ(dateTimeOf(253402300799999999U, false), "99991231235959.999999+000");
    EXPECT_EQ(dateTimeOf(253402300800000000U, false), std::nullopt);
    EXPECT_EQ(dateTimeOf(8640000000000000000U, true), std::nullopt);
    EXPECT_EQ(dateTimeOf(~std::uint64_t{0}, false), std::nullopt);
}

}  // namespace
}  // namespace cimhost
