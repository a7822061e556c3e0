#include "cimhost/server/ConsoleLog.h"

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

TEST(ConsoleLog, DropsWhatIsLessUrgent) {
    ConsoleLog log(BrokerLog::Level::warning);
    EXPECT_EQ(written([&] { log.write(BrokerLog::Level::information, "a", "b"); }), "");
    EXPECT_NE(written([&] { log.write(BrokerLog::Level::warning, "a", "b"); }), "");
    EXPECT_NE(written([&] { log.write(BrokerLog::Level::error, "a", "b"); }), "");
}

}  // namespace
}  // namespace cimhost
