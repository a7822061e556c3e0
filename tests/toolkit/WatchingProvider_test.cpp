#include "toolkit/WatchingProvider.h"

#include "tests/common/Failures.h"
#include "tests/support/Journal.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

namespace {

struct NotingProvider : PYL::WatchingProvider {
    Lines lines;

    CMPIBroker* getBroker() override { return nullptr; }

protected:
    void startWatching(const CmpiCpp::CmpiContext&) override { lines.emplace_back("start"); }
    void stopWatching() override { lines.emplace_back("stop"); }
};

struct WatchingProviderTest : testing::Test {
    TestBroker host;
    NotingProvider provider;
    CmpiCpp::CmpiObjectPath path = host.path("PYL_Thing", "a");
};

TEST_F(WatchingProviderTest, WatchesWhileIndicationsAreEnabled) {
    provider.enableIndications(host.context());
    EXPECT_EQ(provider.lines, Lines{"start"});
    provider.disableIndications(host.context());
    EXPECT_EQ(provider.lines, (Lines{"start", "stop"}));
}

TEST_F(WatchingProviderTest, WatchesNoMoreOnceItIsCleanedUp) {
    provider.enableIndications(host.context());
    provider.cleanup(host.context(), false);
    EXPECT_EQ(provider.lines, (Lines{"start", "stop"}));
}

TEST_F(WatchingProviderTest, TakesEveryFilterAndNeedsNoPolling) {
    provider.authorizeFilter(host.context(), nullptr, "PYL_Thing", path, "me");
    provider.activateFilter(host.context(), nullptr, "PYL_Thing", path, true);
    provider.deactivateFilter(host.context(), nullptr, "PYL_Thing", path, true);
    EXPECT_EQ(provider.lines, Lines{});
    EXPECT_EQ(outcomeOf([&] { provider.mustPoll(host.context(), nullptr, "PYL_Thing", path); }),
              "status 7 nothing has to be polled");
}

}  // namespace
