#include "cimhost/server/IndicationText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

constexpr std::chrono::system_clock::time_point arrival{std::chrono::seconds(86400)};

Instance alert() {
    Instance indication;
    indication.path.className = "CIM_AlertIndication";
    return indication;
}

TEST(IndicationText, ShowsTimeClassSeverityHeadlineAndProperties) {
    Instance indication = alert();
    indication.set("PerceivedSeverity", Value::unsignedInteger(CimType::uint16, 6));
    indication.set("IndicationTime",
                   Value(CimType::dateTime, std::string("20260501140000.000000+120")));
    indication.set("Description", Value::string("Fan 3 has failed"));
    indication.set("Empty", Value::null(CimType::string));
    EXPECT_EQ(describeIndication(indication, arrival),
              "2026-05-01 12:00:00  CIM_AlertIndication  Critical\n"
              "    Fan 3 has failed\n"
              "    PerceivedSeverity = 6\n"
              "    IndicationTime = \"20260501140000.000000+120\"\n"
              "    Description = \"Fan 3 has failed\"\n");
}

TEST(IndicationText, FallsBackOnTheArrival) {
    EXPECT_EQ(describeIndication(alert(), arrival),
              "1970-01-02 00:00:00  CIM_AlertIndication  -\n");
    Instance odd = alert();
    odd.set("IndicationTime", Value::string("soon"));
    EXPECT_EQ(describeIndication(odd, arrival).substr(0, 19), "1970-01-02 00:00:00");
}

TEST(IndicationText, HasAWordForEverySeverity) {
    const auto severity = [](std::uint64_t number, const char* other = nullptr) {
        Instance indication = alert();
        indication.set("PerceivedSeverity", Value::unsignedInteger(CimType::uint16, number));
        if (other) indication.set("OtherSeverity", Value::string(other));
        const std::string text = describeIndication(indication, arrival);
        return text.substr(42, text.find('\n') - 42);
    };
    EXPECT_EQ(severity(0), "Unknown");
    EXPECT_EQ(severity(1), "Other");
    EXPECT_EQ(severity(1, "Odd"), "Odd");
    EXPECT_EQ(severity(3), "Degraded/Warning");
    EXPECT_EQ(severity(7), "Fatal/NonRecoverable");
    EXPECT_EQ(severity(8), "severity 8");
}

TEST(IndicationText, LetsNoControlCharacterThrough) {
    Instance indication = alert();
    indication.path.className = "A\nB";
    indication.set("Message", Value::string("\x1b[2J\x7f"));
    const std::string text = describeIndication(indication, arrival);
    EXPECT_EQ(text.find('\x1b'), std::string::npos);
    EXPECT_NE(text.find("    \\x1b[2J\\x7f\n"), std::string::npos);
    EXPECT_NE(text.find("A\\x0aB"), std::string::npos);
}

TEST(IndicationText, ShowsWhatWouldDeceiveItsReader) {
    Instance indication = alert();
    indication.set("Message", Value::string("\xC2\x9B 31m\n\xE2\x80\xAE L\xC3\xBC"));
    const std::string text = describeIndication(indication, arrival);
    EXPECT_NE(text.find("    \\u009b 31m\\x0a\\u202e L\xC3\xBC\n"), std::string::npos) << text;
}

}  // namespace
}  // namespace cimhost
