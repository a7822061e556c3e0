#include "cimhost/objects/ObjectScope.h"

#include "cimhost/objects/Object.h"
#include "cimhost/operations/UpCalls.h"
#include "tests/support/BrokerFixture.h"

#include <optional>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

// Counts itself, to tell when it ends.
struct Witness : ObjectBase<CMPIPropertyList, ObjectKind::propertyList> {
    static const CMPIPropertyListFT table;
    explicit Witness(int& alive) : count(alive) { ++count; }
    ~Witness() { --count; }
    int& count;
};
const CMPIPropertyListFT Witness::table{};

class ObjectScopes : public testing::Test {
protected:
    Repository repository;
    CapturingLog log;
    Broker broker{repository, log, fillUpCalls};
    int alive = 0;
};

TEST_F(ObjectScopes, EndTheirObjects) {
    {
        const CallScope call;
        for (int i = 0; i < 1000; ++i) make<Witness>(Home{broker}, alive);
        EXPECT_EQ(alive, 1000);
    }
    EXPECT_EQ(alive, 0);
}

TEST_F(ObjectScopes, NestAndEndTheInnermostFirst) {
    const CallScope outer;
    make<Witness>(Home{broker}, alive);
    {
        const CallScope inner;
        make<Witness>(Home{broker}, alive);
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(alive, 1);
}

TEST_F(ObjectScopes, EndPartsWithTheirOwnerInAnyDepth) {
    const CallScope call;
    Witness& first = make<Witness>(Home{broker}, alive);
    ObjectHeader* owner = &first;
    for (int i = 0; i < 100000; ++i) owner = &make<Witness>(partOf(*owner), alive);
    EXPECT_EQ(alive, 100001);
    endObject(first);
    EXPECT_EQ(alive, 0);
}

TEST_F(ObjectScopes, EndPartsInAnyDepthThemselves) {
    {
        const CallScope call;
        ObjectHeader* owner = &make<Witness>(Home{broker}, alive);
        for (int i = 0; i < 100000; ++i) owner = &make<Witness>(partOf(*owner), alive);
    }
    EXPECT_EQ(alive, 0);
}

TEST_F(ObjectScopes, KeepPartsThatWereMadeInAnInnerScopeThere) {
    const CallScope outer;
    Witness& owner = make<Witness>(Home{broker}, alive);
    std::optional<CallScope> inner(std::in_place);
    make<Witness>(partOf(owner), alive);
    inner.reset();
    EXPECT_EQ(alive, 1);
    endObject(owner);
    EXPECT_EQ(alive, 0);
}

TEST_F(ObjectScopes, DoNotEndClones) {
    Witness* clone = nullptr;
    {
        const CallScope call;
        clone = &makeClone<Witness>(broker, 0, alive);
    }
    EXPECT_EQ(alive, 1);
    endObject(*clone);
    EXPECT_EQ(alive, 0);
}

TEST_F(ObjectScopes, OfThreadsWithoutACallEndWithTheThread) {
    int* const count = &alive;
    std::thread([this, count] {
        make<Witness>(Home{broker}, *count);
        make<Witness>(Home{broker}, *count);
    }).join();
    EXPECT_EQ(alive, 0);
    std::thread([this, count] { make<Witness>(Home{broker}, *count); }).join();
    const auto lines = log.lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].level, BrokerLog::Level::warning);
}

struct FailsToBegin : Witness {
    explicit FailsToBegin(int& alive) : Witness(alive) { throw std::bad_alloc(); }
};

TEST_F(ObjectScopes, AreAsBeforeWhenAnObjectCannotBeMade) {
    const CallScope call;
    EXPECT_THROW(make<FailsToBegin>(Home{broker}, alive), std::bad_alloc);
    EXPECT_EQ(alive, 0);
    make<Witness>(Home{broker}, alive);
    EXPECT_EQ(alive, 1);
}

TEST_F(ObjectScopes, ServeManyThreadsAtOnce) {
    const auto work = [this] {
        int mine = 0;
        for (int round = 0; round < 50; ++round) {
            const CallScope call;
            for (int i = 0; i < 300; ++i) {
                Witness& witness = make<Witness>(Home{broker}, mine);
                if (i % 3 == 0) endObject(witness);
            }
        }
        EXPECT_EQ(mine, 0);
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(work);
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace cimhost
