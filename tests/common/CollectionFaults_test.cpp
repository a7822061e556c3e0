// Every call of the broker and every allocation fails in turn: whatever comes of a request is
// orderly, and the next one finds the collection as it was.

#include "testing/cimhost/testing/Allocations.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/common/CollectionFixture.h"
#include "tests/common/CollectionRequests.h"
#include "tests/common/Failures.h"

namespace {

using cimtest::FaultyBroker;

struct CollectionFaults : testing::TestWithParam<CollectionRequest> {
    TestBroker host;
    Calls calls;
    Logger log = silentLogger();
    OpenCollection collection{log};

    int run() {
        const cimhost::CallScope scope;
        return GetParam().run(collection, host);
    }

    /// The outcome of a request in which something fails, and of the next one.
    template <typename Request>
    void expectOrderly(const Request& request, const std::string& what) {
        int delivered = 0;
        const auto outcome = outcomeOf([&] { delivered = request(); });
        EXPECT_TRUE(outcome == "none" || outcome == "bad_alloc" || outcome.starts_with("status "))
            << outcome << " when " << what << " fails";
        // A broker that gives every name as empty makes everything match.
        EXPECT_LE(delivered, static_cast<int>(collection.size())) << what;
        EXPECT_FALSE(collection.isLocked()) << what;
    }
};

TEST_P(CollectionFaults, OfTheBrokerAreStatuses) {
    FaultyBroker faulty(host.real());
    FaultyBroker::adopt(host.context().toCMPI());
    host.use(faulty.handle());
    fillCollection(collection, host, calls);
    int failures = 0;
    for (const auto& slot : FaultyBroker::slots()) {
        faulty.heal();
        ASSERT_EQ(run(), GetParam().delivered) << "before " << slot;
        const auto count = faulty.calls(slot);
        for (const auto fault : {FaultyBroker::Fault::status, FaultyBroker::Fault::null,
                                 FaultyBroker::Fault::wrongType}) {
            for (unsigned nth = 1; nth <= count; ++nth) {
                faulty.failCall(slot, nth, fault);
                expectOrderly([&] { return run(); }, slot + " " + std::to_string(nth));
                failures += faulty.hasFailed() ? 1 : 0;
            }
            faulty.failFrom(slot, 1, fault);
            expectOrderly([&] { return run(); }, slot + " always");
        }
    }
    faulty.heal();
    EXPECT_EQ(run(), GetParam().delivered);
    EXPECT_GT(failures, 30);
}

TEST_P(CollectionFaults, OfMemoryAreExceptionsAndLeaveTheCollectionAsItWas) {
    fillCollection(collection, host, calls);
    ASSERT_EQ(run(), GetParam().delivered);
    for (const bool forever : {false, true}) {
        int nth = 0;
        do {
            ++nth;
            expectOrderly(
                [&] {
                    const cimtest::FailingAllocation failing(nth, forever);
                    return run();
                },
                "allocation " + std::to_string(nth));
            ASSERT_EQ(run(), GetParam().delivered);
            ASSERT_LT(nth, 5000);
        } while (cimtest::allocationHasFailed() && !HasFailure());
        if (!forever) {
            EXPECT_GT(nth, 1);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Each, CollectionFaults, testing::ValuesIn(collectionRequests()),
                         [](const auto& row) { return std::string(row.param.name); });

struct CollectionMemory : CollectionFixture {};

TEST_F(CollectionMemory, LeavesAnInstanceToTheCallerThatItCannotTake) {
    for (int i = 0; i < 9; ++i) add(std::to_string(i));
    collection.deleteInstance(
        thing("8"));  // eight fill the room that a vector has by now, or sixteen
    int refused = 0;
    for (int i = 0; i < 40; ++i) {
        auto instance = std::make_unique<Thing>(host, calls, thing("new"));
        const auto before = collection.size();
        bool taken = false;
        {
            const cimtest::FailingAllocation failing(1, true);
            try {
                taken = collection.createInstance(instance.get());
            } catch (const std::bad_alloc&) {
                ++refused;
            }
        }
        EXPECT_EQ(collection.size(), before + (taken ? 1 : 0));
        EXPECT_FALSE(collection.isLocked());
        if (!taken) collection.createInstance(instance.get());
        instance.release();
    }
    EXPECT_GT(refused, 0);
}

TEST_F(CollectionMemory, KeepsEverythingWhenThereIsNoRoomToCleanUp) {
    add("a");
    add("b")->setVisible(false);
    {
        const cimtest::FailingAllocation failing(1, true);
        EXPECT_THROW(collection.cleanup(), std::bad_alloc);
    }
    EXPECT_FALSE(collection.isLocked());
    EXPECT_EQ(collection.size(), 2U);
    collection.cleanup();
    EXPECT_EQ(collection.size(), 1U);
}

}  // namespace
