#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <thread>

namespace {

using cimtest::Captured;
using cimtest::failureOf;
using cimtest::LogLine;

TEST(Waiting, EndsWithWhatComesOnAnotherThread) {
    Captured<LogLine> lines;
    const std::jthread thread([&] {
        lines.add({"warning", "a", "first"});
        lines.add({"error", "b", "second"});
    });
    EXPECT_EQ(lines.waitFor("second").source, "b");
    EXPECT_EQ(lines.waitFor([](const LogLine& line) { return line.source == "a"; }).message,
              "first");
    EXPECT_EQ(lines.countOf("error"), 1U);
}

TEST(Waiting, FailsAtItsDeadlineWithWhatCameInstead) {
    Captured<LogLine> lines;
    EXPECT_EQ(failureOf([&] { lines.waitFor("y", std::chrono::milliseconds(1)); }),
              "\"y\": what is waited for did not come; there came nothing");
    lines.add({"error", "a", "text"});
    EXPECT_EQ(failureOf([&] { lines.waitFor("y", std::chrono::milliseconds(1)); }),
              "\"y\": what is waited for did not come; there came\n  error a: text");
    EXPECT_EQ(lines.take().size(), 1U);
    EXPECT_EQ(lines.all().size(), 0U);
}

}  // namespace
