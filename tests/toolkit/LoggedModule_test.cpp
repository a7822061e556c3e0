#include "toolkit/LoggedModule.h"

#include "tests/common/Failures.h"
#include "tests/common/QuietResults.h"
#include "tests/support/TestBroker.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace {

struct EmptyProvider : PYL::CollectionProvider {
    EmptyProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
        : CollectionProvider(broker, log) {
        EXPECT_EQ(PYL::PYLUtil::getBroker(), broker.toCMPI()) << "its paths depend on it";
    }
};

struct UnwillingProvider : PYL::CollectionProvider {
    UnwillingProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
        : CollectionProvider(broker, log) {
        throw std::runtime_error("no hardware");
    }
};

struct LoggedModuleTest : testing::Test {
    TestBroker host;
    LoggedModuleTest() { PYL::PYLUtil::setBroker(CmpiCpp::CmpiBroker(nullptr)); }
};

TEST_F(LoggedModuleTest, MakesALoggedProviderWhichFindsItsBrokerRecorded) {
    const std::unique_ptr<CmpiCpp::CmpiProvider> made(
        PYL::makeLoggedProvider<EmptyProvider>(host.broker(), "Empty"));
    auto* const logged = dynamic_cast<PYL::LoggedProvider*>(made.get());
    ASSERT_TRUE(logged);
    EXPECT_EQ(logged->getBroker(), host.broker().toRawCMPI());
    CountedPaths paths;
    logged->enumInstanceNames(host.context(), host.path("PYL_Thing", "a"), paths);
    EXPECT_EQ(paths.count, 0);
}

struct Worker : PYL::CmpiManagedInstance {
    CmpiCpp::CmpiName getClassName() override { return "PYL_Thing"; }
    CmpiCpp::CmpiObjectPath getPath() override {
        return PYL::makeLocalPath("PYL_Thing", {{"Id", "worker"}});
    }
    CmpiCpp::CmpiInstance getInstance() override { return PYL::makeInstanceAt(getPath()); }
};

TEST_F(LoggedModuleTest, StartsAProviderWhenItsWorkerIsNotEnough) {
    const std::unique_ptr<CmpiCpp::CmpiProvider> made(
        PYL::makeAutostartedProvider<UnwillingProvider, Worker>(host.broker(), "Unwilling"));
    auto* const provider = dynamic_cast<PYL::AutostartDecorator*>(made.get());
    ASSERT_TRUE(provider);
    CountedPaths paths;
    provider->enumInstanceNames(host.context(), PYL::makeLocalPath("PYL_Thing"), paths);
    EXPECT_EQ(paths.count, 1) << "the worker's, and nothing has started";
    EXPECT_EQ(outcomeOf([&] {
                  provider->enumInstanceNames(host.context(), PYL::makeLocalPath("PYL_Link"),
                                              paths);
              }),
              "exception no hardware");
}

TEST_F(LoggedModuleTest, HandsRequestsOnToTheProviderThatItStarted) {
    const std::unique_ptr<CmpiCpp::CmpiProvider> made(
        PYL::makeAutostartedProvider<EmptyProvider, Worker>(host.broker(), "Empty"));
    CountedPaths paths;
    dynamic_cast<PYL::AutostartDecorator&>(*made).enumInstanceNames(
        host.context(), PYL::makeLocalPath("PYL_Link"), paths);
    EXPECT_EQ(paths.count, 0);
}

TEST_F(LoggedModuleTest, PassesOnWhatTheProviderThrows) {
    EXPECT_EQ(
        outcomeOf([&] { PYL::makeLoggedProvider<UnwillingProvider>(host.broker(), "Unwilling"); }),
        "exception no hardware");
}

}  // namespace
