// What lines cost that the level drops: no path is read to make a text of it, nothing is allocated.

#include "common/DecoratorUtils.h"
#include "common/LoggedProvider.h"
#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/CollectionFixture.h"
#include "tests/common/CollectionRequests.h"
#include "tests/common/Failures.h"
#include "tests/common/ProviderOperations.h"

#include <memory>

namespace {

using cimtest::FaultyBroker;

/// A broker that counts its calls.
struct LogCost : testing::Test {
    TestBroker host;
    FaultyBroker counting{host.real()};

    LogCost() { host.use(counting.handle()); }

    /// Calls to the broker while the action runs.
    template <typename Action>
    unsigned callsOf(const Action& action) {
        counting.heal();
        action();
        unsigned calls = 0;
        for (const auto& slot : FaultyBroker::slots()) calls += counting.calls(slot);
        return calls;
    }
};

TEST_F(LogCost, OfResultLoggersIsNothing) {
    auto logger = silentLogger(LogLevel::error);
    CountedPaths paths;
    CountedInstances instances;
    LoggedObjectPathResult loggedPaths(logger, paths);
    LoggedInstanceResult loggedInstances(logger, instances);
    const auto path = host.path("PYL_Thing", "a");
    const auto instance = CmpiCpp::makeCmpiInstance(host.broker(), path);
    const auto deliver = [&] {
        loggedPaths.deliver(path);
        loggedInstances.deliver(instance);
    };
    EXPECT_EQ(callsOf(deliver), 0U);
    const int before = cimtest::allocationCount();
    deliver();
    EXPECT_EQ(cimtest::allocationCount(), before);
    EXPECT_EQ(paths.count + instances.count, 4);
    logger.setLevel(LogLevel::information);
    EXPECT_GT(callsOf(deliver), 10U);
}

CmpiCpp::CmpiProvider* noProvider(const CmpiCpp::CmpiBroker&, Logger&) { return nullptr; }

TEST_F(LogCost, OfADecoratorIsNothing) {
    Journal journal;
    Request request(host, journal);
    auto logger = silentLogger(LogLevel::warning);
    PYL::LoggedProvider provider(host.broker(), logger, noProvider);
    for (const auto& operation : providerOperations()) {
        const auto run = [&] {
            const auto outcome = outcomeOf([&] { operation.run(provider, request); });
            EXPECT_TRUE(outcome == "none" || outcome.starts_with("status 100 ")) << outcome;
        };
        EXPECT_EQ(callsOf(run), 0U) << operation.name;
    }
    // The same with the lines does call, so the count above is of something.
    logger.setLevel(LogLevel::information);
    EXPECT_GT(callsOf([&] {
                  outcomeOf([&] { provider.deleteInstance(request.context, request.path); });
              }),
              5U);
}

TEST_F(LogCost, OfAWalkIsLessThanWithTheLines) {
    Calls calls;
    auto logger = silentLogger();
    OpenCollection collection(logger);
    fillCollection(collection, host, calls);
    for (const auto& request : collectionRequests()) {
        if (std::string(request.name) == "getManagedInstance") continue;  // it has no lines
        const auto run = [&] { EXPECT_EQ(request.run(collection, host), request.delivered); };
        logger.setLevel(LogLevel::information);
        const auto loud = callsOf(run);
        logger.setLevel(LogLevel::error);
        const auto quiet = callsOf(run);
        const bool hasPathLines = !std::string(request.name).starts_with("reference");
        if (hasPathLines) {
            EXPECT_LT(quiet, loud) << request.name;
        } else {
            EXPECT_EQ(quiet, loud) << request.name;
        }
    }
}

TEST_F(LogCost, OfAnEnumerationReadsNoKeys) {
    Calls calls;
    auto logger = silentLogger(LogLevel::error);
    OpenCollection collection(logger);
    fillCollection(collection, host, calls);
    for (const auto& request : collectionRequests()) {
        if (!std::string(request.name).starts_with("enum")) continue;
        counting.heal();
        request.run(collection, host);
        // Who makes an instance reads the one key of its path, and who collects reads none.
        const bool makesInstances = std::string(request.name) == "enumInstances";
        const auto expected = static_cast<unsigned>(makesInstances ? request.delivered : 0);
        EXPECT_EQ(counting.calls("CMPIObjectPathFT.getKeyAt"), expected) << request.name;
    }
}

}  // namespace
