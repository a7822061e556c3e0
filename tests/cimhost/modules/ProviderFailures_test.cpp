#include "cimhost/modules/ProviderCall.h"
#include "tests/cimhost/operations/OperationsFixture.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace cimhost::test {
namespace {

/// Provider P of TST_Fan.
class ProviderFailures : public OperationsTest {
protected:
    ScriptedProvider& p = serve("P", "TST_Fan root/test instance");

    std::string get() {
        FoundInstances found;
        return errorOf(
            [&] { operations().getInstance(request(), named("TST_Fan", "a"), {}, found); });
    }
};

constexpr const char* call =
    "error P: module PModule, provider P, operation getInstance, path "
    "root/test:TST_Fan.Name=\"a\": ";

TEST_F(ProviderFailures, AreLoggedWithProviderOperationAndPath) {
    p.getInstance = [&](const ProviderCalled&) { return p.fail(1); };
    start();
    EXPECT_NE(get(), "");
    EXPECT_EQ(log.countOf(call), 1U);
    p.getInstance = [&](const ProviderCalled&) { return p.fail(200); };
    get();
    EXPECT_EQ(log.countOf(std::string(call) + "provider P answered with CMPI return code 200"), 1U)
        << "codes of CMPI alone are no better";
}

TEST_F(ProviderFailures, AreLoggedWithWhatAnExceptionSays) {
    p.getInstance = [&](const ProviderCalled&) -> CMPIStatus {
        throw std::runtime_error("a fan blade");
    };
    start();
    EXPECT_EQ(get(), "1: provider P threw a fan blade");
    EXPECT_EQ(log.countOf(std::string(call) + "provider P threw a fan blade"), 1U);
}

TEST_F(ProviderFailures, AreNoneThatAnswerTheClient) {
    p.getInstance = [&](const ProviderCalled&) { return p.fail(6); };
    start();
    get();
    EXPECT_EQ(log.lines().size(), 0U);
}

TEST_F(ProviderFailures, AreLeftToTheProcessThatMadeTheCall) {
    p.getInstance = [&](const ProviderCalled&) { return p.fail(1); };
    start();
    const ToldElsewhere told;
    get();
    EXPECT_EQ(log.lines().size(), 0U);
}

}  // namespace
}  // namespace cimhost::test
