#include "cimhost/server/ConsoleLog.h"

#include "cimhost/server/LoggedRequest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

std::string written(const std::function<void()>& action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

TEST(ConsoleLog, WritesOneLine) {
    ConsoleLog log(BrokerLog::Level::debug);
    EXPECT_THAT(
        written([&] { log.write(BrokerLog::Level::warning, "Fans", "fan\n3\x1B[31m fails"); }),
        testing::MatchesRegex("[0-9T:.-]+Z warning Fans: fan 3 .31m fails\n"));
}

TEST(ConsoleLog, TellsTheRequestOfItsThread) {
    ConsoleLog log(BrokerLog::Level::debug);
    const LoggedRequest request(12, "Get\nInstance");
    EXPECT_THAT(written([&] { log.write(BrokerLog::Level::warning, "Fans", "fails"); }),
                testing::MatchesRegex("[0-9T:.-]+Z .12 Get Instance. warning Fans: fails\n"));
}

TEST(ConsoleLog, WritesAnObjectALineForMachines) {
    ConsoleLog log(BrokerLog::Level::debug, LogFormat::json);
    const auto line = [&] {
        return written(
            [&] { log.write(BrokerLog::Level::warning, "Fans", "a\"b\\c\n\xFF \xC3\xBC"); });
    };
    EXPECT_THAT(line(), testing::MatchesRegex(
                            ".\"time\":\"[0-9T:.-]+Z\",\"level\":\"warning\",\"component\":"
                            "\"Fans\",\"text\":\"a.\"b..c.u000a.ufffd \xC3\xBC\".\n"));
    const LoggedRequest request(12, "GetInstance");
    EXPECT_THAT(line(), testing::HasSubstr(",\"request\":12,\"operation\":\"GetInstance\","));
}

TEST(ConsoleLog, TakesTheLinesOfModulesAsItsOwn) {
    ConsoleLog(BrokerLog::Level::warning, LogFormat::json).takeLinesOfModules();
    const auto line = [](int level) {
        return written([level] { cimhost_write_log(level, "Fans", 4, "fails", 5); });
    };
    EXPECT_THAT(line(0), testing::HasSubstr("\"level\":\"error\",\"component\":\"Fans\""));
    EXPECT_THAT(line(1), testing::HasSubstr("\"level\":\"warning\""));
    EXPECT_EQ(line(2), "") << "less urgent";
    EXPECT_THAT(line(77), testing::HasSubstr("\"level\":\"error\""));
    ConsoleLog(BrokerLog::Level::information).takeLinesOfModules();
    EXPECT_THAT(line(2), testing::HasSubstr(" information Fans: fails\n"));
}

TEST(ConsoleLog, TellsWhoLooksTheObjectWhateverItWrites) {
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    ConsoleLog log(BrokerLog::Level::warning, LogFormat::text, &feed);
    const LoggedRequest request(12, "GetInstance");
    const std::string line = written([&] {
        log.write(BrokerLog::Level::warning, "Fans", "</script>\n\"");
        log.write(BrokerLog::Level::information, "Fans", "less urgent");
    });
    const auto events = viewer.take({}).events;
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(*events.front(), "event: log\ndata: {\"time\":\"" + line.substr(0, 24) +
                                   "\",\"level\":\"warning\",\"request\":12,"
                                   "\"operation\":\"GetInstance\",\"component\":\"Fans\","
                                   "\"text\":\"</script>\\u000a\\\"\"}\n\n");
}

TEST(ConsoleLog, TellsWhoLooksTheLinesOfModulesToo) {
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    ConsoleLog(BrokerLog::Level::warning, LogFormat::json, &feed).takeLinesOfModules();
    const auto line = written([] { cimhost_write_log(1, "Fans", 4, "fails", 5); });
    ConsoleLog(BrokerLog::Level::information).takeLinesOfModules();
    const auto events = viewer.take({}).events;
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(*events.front(), "event: log\ndata: " + line + "\n") << "it ends a line itself";
}

TEST(ConsoleLog, ShowsWhatWouldDeceiveItsReader) {
    ConsoleLog log(BrokerLog::Level::debug);
    const auto line = [&](std::string_view message) {
        const auto text =
            written([&] { log.write(BrokerLog::Level::error, "L\xC3\xBC", message); });
        return text.substr(text.find("error "));
    };
    EXPECT_EQ(line("\xC2\x9B 31m"), "error L\xC3\xBC: \\u009b 31m\n");
    EXPECT_EQ(line("\x9B"
                   "31m \xFF"),
              "error L\xC3\xBC: \\x9b31m \xFF\n");
    EXPECT_EQ(line("a\xE2\x80\xAE"
                   "b\xE2\x81\xA6\xD8\x9C\xE2\x80\x8F\xE2\x80\xA8"),
              "error L\xC3\xBC: a\\u202eb\\u2066\\u061c\\u200f\\u2028\n");
    EXPECT_EQ(line("\xC3\x9B \xE2\x82\xAC \xF0\x9F\x98\x80 \xC2\xA0"),
              "error L\xC3\xBC: \xC3\x9B \xE2\x82\xAC \xF0\x9F\x98\x80 \xC2\xA0\n")
        << "bytes of other characters stay";
}

TEST(ConsoleLog, DropsWhatIsLessUrgent) {
    ConsoleLog log(BrokerLog::Level::warning);
    EXPECT_EQ(written([&] { log.write(BrokerLog::Level::information, "a", "b"); }), "");
    EXPECT_NE(written([&] { log.write(BrokerLog::Level::warning, "a", "b"); }), "");
    EXPECT_NE(written([&] { log.write(BrokerLog::Level::error, "a", "b"); }), "");
}

}  // namespace
}  // namespace cimhost
