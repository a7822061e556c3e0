#include "toolkit/FailureText.h"

#include "testing/cimhost/testing/Allocations.h"
#include "tests/common/Failures.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

std::string textOf(const Failure& failure, bool isMemoryGone) {
    std::optional<cimtest::FailingAllocation> failing;
    try {
        failure.raise();
    } catch (...) {
        if (isMemoryGone) failing.emplace(1, true);
        return PYL::failureText();
    }
    return "nothing was thrown";
}

TEST(FailureText, SaysWhatIsInFlight) {
    struct {
        Failure failure;
        const char* text;
    } const rows[] = {
        {{"", [] { throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "blind"); }},
         "CMPI_RC_ERR_FAILED (1): blind"},
        {{"", [] { throw DetailedStatus(CMPI_RC_ERR_FAILED, "broken", 42); }},
         "CMPI_RC_ERR_FAILED (1): broken"},
        {{"", [] { throw std::runtime_error("odd"); }}, "odd"},
        {{"", [] { throw 7; }}, "unknown exception"},
        {{"", [] { throw std::bad_alloc(); }}, "std::bad_alloc"},
    };
    for (const auto& row : rows) EXPECT_EQ(textOf(row.failure, false), row.text);
}

TEST(FailureText, ThrowsNothingWhenMemoryIsGone) {
    const Failure wordy{
        "", [] { throw std::runtime_error("something that takes more than a few letters"); }};
    EXPECT_EQ(textOf(wordy, true), "out of memory");
    for (const auto& failure : allFailures()) EXPECT_NE(textOf(failure, true), "") << failure.name;
}

}  // namespace
