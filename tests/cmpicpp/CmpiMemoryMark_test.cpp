#include "cmpicpp/CmpiMemoryMark.h"

#include "cmpicpp/CmpiInstance.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "tests/cmpicpp/BrokerFixture.h"

namespace CmpiCpp {
namespace {

using cimtest::FaultyBroker;
using test::codeOf;

class CmpiMemoryMarkTest : public test::BrokerTest {};

TEST_F(CmpiMemoryMarkTest, LeavesClonesAndWhatWasMadeBefore) {
    const CmpiObjectPath before = path();
    CmpiObjectPath kept;
    {
        const CmpiMemoryMark mark(broker());
        kept = path().clone();
    }
    EXPECT_EQ(kept, before);
    EXPECT_EQ(kept.str(), before.str());
}

TEST_F(CmpiMemoryMarkTest, IsReleasedOnceForEachTime) {
    FaultyBroker faulty(brokerOf("standard").handle());
    const CmpiBroker counted(faulty.handle());
    for (int i = 0; i < 3; ++i) {
        const CmpiMemoryMark outer(counted);
        const CmpiMemoryMark inner(counted);
    }
    EXPECT_EQ(faulty.calls("CMPIBrokerMemFT.mark"), 6U);
    EXPECT_EQ(faulty.calls("CMPIBrokerMemFT.release"), 6U);
}

TEST_F(CmpiMemoryMarkTest, IsReleasedWhenAnExceptionPassesIt) {
    FaultyBroker faulty(brokerOf("standard").handle());
    EXPECT_EQ(codeOf([&] {
                  const CmpiMemoryMark mark{CmpiBroker(faulty.handle())};
                  throw CmpiStatus(CMPI_RC_ERR_FAILED, "in the middle");
              }),
              CMPI_RC_ERR_FAILED);
    EXPECT_EQ(faulty.calls("CMPIBrokerMemFT.release"), 1U);
}

TEST_F(CmpiMemoryMarkTest, DoesNothingWhereTheBrokerGivesNone) {
    FaultyBroker faulty(handle());
    for (const auto fault : {FaultyBroker::Fault::status, FaultyBroker::Fault::null}) {
        faulty.failCall("CMPIBrokerMemFT.mark", 1, fault);
        const CmpiMemoryMark mark{CmpiBroker(faulty.handle())};
        EXPECT_FALSE(path().empty());
    }
    EXPECT_EQ(faulty.calls("CMPIBrokerMemFT.release"), 0U);
}

TEST_F(CmpiMemoryMarkTest, DoesNothingWithoutMemoryServices) {
    CMPIBroker plain = *handle();
    plain.mft = nullptr;
    for (const CMPIBroker* const none :
         {static_cast<const CMPIBroker*>(&plain), static_cast<const CMPIBroker*>(nullptr)}) {
        const CmpiMemoryMark mark{CmpiBroker(none)};
    }
}

TEST_F(CmpiMemoryMarkTest, DoesNotLookForThemInABrokerOfVersion1) {
    for (const CMPIVersion version : {CMPIVersion{0}, CMPIVersion{CMPIVersion100}}) {
        CMPIBrokerFT upCalls = *handle()->bft;
        upCalls.brokerVersion = version;
        CMPIBrokerMemFT nobodys{};
        nobodys.mark = [](const CMPIBroker*, CMPIStatus*) -> CMPIGcStat* {
            ADD_FAILURE() << "there is no such member";
            return nullptr;
        };
        CMPIBroker old = *handle();
        old.bft = &upCalls;
        old.mft = &nobodys;
        const CmpiMemoryMark mark{CmpiBroker(&old)};
    }
}

TEST_F(CmpiMemoryMarkTest, LetsNothingOutThatTheBrokerThrows) {
    CMPIBrokerMemFT throwing{};
    CMPIBroker broker = *handle();
    broker.mft = &throwing;
    throwing.mark = [](const CMPIBroker*, CMPIStatus*) -> CMPIGcStat* { throw 1; };
    { const CmpiMemoryMark mark{CmpiBroker(&broker)}; }
    static char place = 0;
    throwing.mark = [](const CMPIBroker*, CMPIStatus*) -> CMPIGcStat* { return &place; };
    throwing.release = [](const CMPIBroker*, const CMPIGcStat*) -> CMPIStatus { throw 1; };
    { const CmpiMemoryMark mark{CmpiBroker(&broker)}; }
    EXPECT_FALSE(path().empty());
}

}  // namespace
}  // namespace CmpiCpp
