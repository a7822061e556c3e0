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

}  // namespace
}  // namespace CmpiCpp
