#include "cimhost/http/HttpDate.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

TEST(HttpDate, WritesTheFormOfTheStandard) {
    EXPECT_EQ(formatHttpDate(784111777), "Sun, 06 Nov 1994 08:49:37 GMT");
    EXPECT_EQ(formatHttpDate(0), "Thu, 01 Jan 1970 00:00:00 GMT");
}

TEST(HttpDate, IsNow) {
    const std::time_t before = std::time(nullptr);
    const std::string date(httpDate());
    const std::time_t after = std::time(nullptr);
    EXPECT_TRUE(date == formatHttpDate(before) || date == formatHttpDate(after)) << date;
}

}  // namespace
}  // namespace cimhost
