#include "cimhost/server/events/RelayedLine.h"

#include "cimhost/server/ConsoleLog.h"
#include "cimhost/server/LoggedRequest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr const char* time = "2024-05-01T12:00:00.123Z";

std::string relayed(std::string_view line) { return relayedLine("fans", line); }

/// A line of a log in the format, without its end.
std::string written(LogFormat format, std::string_view text) {
    testing::internal::CaptureStderr();
    ConsoleLog(BrokerLog::Level::debug, format).write(BrokerLog::Level::warning, "F: a", text);
    const std::string line = testing::internal::GetCapturedStderr();
    return line.substr(0, line.size() - 1);
}

TEST(RelayedLine, IsTheObjectThatItIs) {
    const LoggedRequest request(12, "Get\"Instance");
    const std::string line = written(LogFormat::json, "a\"b\\c\n\xFF \xC3\xBC");
    EXPECT_EQ(relayed(line), line);
}

TEST(RelayedLine, HasThePartsOfALineOfText) {
    EXPECT_EQ(relayed(std::string(time) + " warning Fans: fan: \"3\" fails"),
              R"({"time":"2024-05-01T12:00:00.123Z","level":"warning","component":"Fans",)"
              R"("text":"fan: \"3\" fails"})");
    EXPECT_EQ(relayed(std::string(time) + " [12 GetInstance] error Fans: "),
              R"({"time":"2024-05-01T12:00:00.123Z","level":"error","request":12,)"
              R"("operation":"GetInstance","component":"Fans","text":""})");
    const LoggedRequest request(7, "Get Class");
    EXPECT_THAT(relayed(written(LogFormat::text, "x")),
                HasSubstr(R"("level":"warning","request":7,"operation":"Get Class",)"));
}

TEST(RelayedLine, IsOfTheModuleWhereItIsNeither) {
    const std::string object = std::string("{\"time\":\"") + time +
                               "\",\"level\":\"error\",\"component\":\"a\",\"text\":\"b\"}";
    ASSERT_EQ(relayed(object), object);
    for (const std::string& line : std::initializer_list<std::string>{
             "terminate called", "", "{", object + "x", object.substr(0, object.size() - 2),
             "{\"time\":\"a\nb\",\"level\":\"error\",\"component\":\"a\",\"text\":\"b\"}",
             "{\"time\":\"\\x\",\"level\":\"error\",\"component\":\"a\",\"text\":\"b\"}",
             "{\"time\":\"\\u12",
             "{\"time\":\"a\",\"level\":\"error\",\"request\":,\"operation\":\"\","
             "\"component\":\"a\",\"text\":\"b\"}",
             "{\"time\":\"a\",\"level\":\"error\",\"component\":\"\xFF\",\"text\":\"b\"}",
             std::string(time) + " loud Fans: x", std::string(time) + " error Fans",
             std::string(time) + " [a b] error Fans: x", std::string(time) + " [1 b error Fans: x",
             "2024-05-01T12:00:00.12xZ error Fans: x"}) {
        const std::string data = relayed(line);
        EXPECT_THAT(data, MatchesRegex("..time.:.[0-9T:.-]+Z.,.level.:.information.,"
                                       ".component.:.fans.,.text.:..*.}"))
            << line;
        EXPECT_EQ(relayed(data), data) << "whatever it holds is well escaped";
    }
}

}  // namespace
}  // namespace cimhost
