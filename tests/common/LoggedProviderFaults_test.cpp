// Every call of the broker and every allocation fails in turn while a request passes the decorator.

#include "common/LoggedProvider.h"
#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/Failures.h"
#include "tests/common/ProviderOperations.h"
#include "tests/common/QuietResults.h"

#include <memory>

namespace {

using cimtest::FaultyBroker;
using PYL::LoggedProvider;

InnerProvider* nextInner = nullptr;

CmpiCpp::CmpiProvider* takeInner(const CmpiCpp::CmpiBroker&, Logger&) {
    return std::exchange(nextInner, nullptr);
}

struct LoggedProviderFaults : testing::TestWithParam<ProviderOperation> {
    TestBroker host;
    FaultyBroker faulty{host.real()};
    Journal journal;

    LoggedProviderFaults() {
        FaultyBroker::adopt(host.context().toCMPI());
        host.use(faulty.handle());
        nextInner = new InnerProvider(host, journal);
        nextInner->deliveries = 2;
        nextInner->onInvoke = [](CmpiCpp::CmpiMethodResult& result) {
            result.deliver("Out", std::string("a text that does not fit into a string object"));
            result.deliver(0U);
        };
        Logger log = silentLogger();
        provider = std::make_unique<LoggedProvider>(host.broker(), log, takeInner);
        request = std::make_unique<Request>(host, journal);
        request->arguments.addArg("Speed", 42U);
    }

    void run() {
        const cimhost::CallScope scope;
        GetParam().run(*provider, *request);
    }
    template <typename Action>
    static void expectOrderly(const Action& action, const std::string& what) {
        const auto outcome = outcomeOf(action);
        EXPECT_TRUE(outcome == "none" || outcome == "bad_alloc" || outcome.starts_with("status "))
            << outcome << " when " << what << " fails";
    }

    std::unique_ptr<Request> request;
    std::unique_ptr<LoggedProvider> provider;
};

TEST_P(LoggedProviderFaults, OfTheBrokerAreStatuses) {
    for (const auto& slot : FaultyBroker::slots()) {
        faulty.heal();
        ASSERT_EQ(outcomeOf([&] { run(); }), "none");
        const auto count = faulty.calls(slot);
        for (const auto fault : {FaultyBroker::Fault::status, FaultyBroker::Fault::null,
                                 FaultyBroker::Fault::wrongType}) {
            for (unsigned nth = 1; nth <= count; ++nth) {
                faulty.failCall(slot, nth, fault);
                expectOrderly([&] { run(); }, slot + " " + std::to_string(nth));
                EXPECT_TRUE(faulty.hasFailed()) << slot;
            }
        }
    }
}

TEST_P(LoggedProviderFaults, OfMemoryAreExceptions) {
    for (const bool forever : {false, true}) {
        for (int nth = 1; nth == 1 || cimtest::allocationHasFailed(); ++nth) {
            expectOrderly(
                [&] {
                    const cimtest::FailingAllocation failing(nth, forever);
                    run();
                },
                "allocation " + std::to_string(nth));
            ASSERT_LT(nth, 5000);
        }
    }
    EXPECT_EQ(outcomeOf([&] { run(); }), "none");
}

INSTANTIATE_TEST_SUITE_P(Each, LoggedProviderFaults, testing::ValuesIn(providerOperations()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
