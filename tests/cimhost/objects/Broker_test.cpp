#include "cimhost/objects/Broker.h"

#include "cimhost/operations/UpCalls.h"
#include "tests/support/BrokerFixture.h"

namespace cimhost {
namespace {

// All slots of a table are pointers, from the first one to the end.
template <typename Table>
std::size_t countNullSlots(const Table& table, std::size_t firstSlot) {
    std::size_t nulls = 0;
    for (std::size_t offset = firstSlot; offset < sizeof(Table); offset += sizeof(void*)) {
        const void* slot = nullptr;
        std::memcpy(&slot, reinterpret_cast<const char*>(&table) + offset, sizeof slot);
        nulls += !slot ? 1 : 0;
    }
    return nulls;
}

constexpr std::size_t afterVersion = 8;

class BrokerTables : public BrokerTest {};

TEST_F(BrokerTables, HaveNoNullSlot) {
    EXPECT_EQ(countNullSlots(*broker()->bft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*broker()->eft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*broker()->xft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*broker()->mft, afterVersion), 0U);
}

TEST_F(BrokerTables, OfObjectsHaveNoNullSlot) {
    ResultSink sink;
    const CMPIResult* const result = makeResult(realBroker, sink);
    const CMPIContext* const context = makeContext(realBroker, {});
    const CMPIEnumeration* const all = makeEnumeration(realBroker, std::vector<Instance>{});
    const char* names[] = {"Name", nullptr};
    EXPECT_EQ(countNullSlots(*result->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*context->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*all->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*newString("")->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*newPath()->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*newInstance()->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*eft().newArgs(broker(), nullptr)->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*eft().newArray(broker(), 1, CMPI_uint8, nullptr)->ft, afterVersion),
              0U);
    EXPECT_EQ(countNullSlots(*eft().newDateTime(broker(), nullptr)->ft, afterVersion), 0U);
    EXPECT_EQ(countNullSlots(*eft().newPropertyList(broker(), names, nullptr)->ft, afterVersion),
              0U);
    EXPECT_EQ(countNullSlots(*eft().newEnumerationFilter(broker(), nullptr, nullptr, nullptr)->ft,
                             afterVersion),
              0U);
    EXPECT_EQ(countNullSlots(*eft()
                                  .newCMPIError(broker(), "", "", "", ErrorSevLow,
                                                ErrorProbCauseOther, CMPI_RC_ERR_FAILED, nullptr)
                                  ->ft,
                             afterVersion),
              0U);
}

TEST_F(BrokerTables, AreFilledToTwoPointOne) {
    EXPECT_EQ(broker()->bft->brokerVersion, CMPIVersion210);
    EXPECT_EQ(broker()->eft->ftVersion, CMPIVersion210);
    EXPECT_EQ(broker()->xft->ftVersion, CMPIVersion210);
    EXPECT_EQ(broker()->mft->ftVersion, CMPIVersion210);
    EXPECT_STREQ(broker()->bft->brokerName, "cimhost");
}

bool has(unsigned int capabilities, unsigned int mask) { return (capabilities & mask) == mask; }

TEST_F(BrokerTables, ClaimWhatIsThereAndNothingElse) {
    const unsigned int bits = broker()->bft->brokerCapabilities;
    for (const auto mask : std::initializer_list<unsigned int>{
             CMPI_MB_InstanceManipulation, CMPI_MB_AssociationTraversal,
             CMPI_MB_BasicQualifierSupport, CMPI_MB_OSEncapsulationSupport,
             CMPI_MB_Supports_MemEnhancements, CMPI_MB_Supports_Extended_Error, CMPI_MB_Logging,
             CMPI_MB_Tracing, CMPI_MB_PropertyFiltering, CMPI_MB_CodepageConversion}) {
        EXPECT_TRUE(has(bits, mask)) << mask;
    }
    EXPECT_TRUE(has(bits, CMPI_MB_QueryNormalization & ~CMPI_MB_QueryExecution));
    EXPECT_FALSE(has(bits, CMPI_MB_QueryExecution));
    EXPECT_FALSE(has(bits, CMPI_MB_Indications));
}

TEST_F(BrokerTables, AreFoundByTheHandleAndItsCopies) {
    const CMPIBroker copy = *broker();
    EXPECT_EQ(Broker::find(broker()), &realBroker);
    EXPECT_EQ(Broker::find(&copy), &realBroker);
}

TEST_F(BrokerTables, AreNotFoundByNullOrForeignHandles) {
    const CMPIBroker foreign = foreignHandle(broker());
    CMPIBroker empty{};
    EXPECT_EQ(Broker::find(nullptr), nullptr);
    EXPECT_EQ(Broker::find(&foreign), nullptr);
    EXPECT_EQ(Broker::find(&empty), nullptr);
}

TEST_F(BrokerTables, OfABrokerThatIsGoneAreNotFound) {
    CMPIBroker copy{};
    {
        const Broker brief(repository, log, fillUpCalls);
        copy = *brief.handle();
        EXPECT_EQ(Broker::find(&copy), &brief);
    }
    EXPECT_EQ(Broker::find(&copy), nullptr);
}

TEST_F(BrokerTables, AnswerInvalidHandleForAForeignBroker) {
    const CMPIBroker foreign = foreignHandle(broker());
    EXPECT_EQ(eft().newString(&foreign, "text", &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(eft().newArgs(nullptr, &status), nullptr);
    EXPECT_EQ(status, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(broker()->bft->attachThread(&foreign, nullptr), CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(mft().mark(&foreign, &status), nullptr);
    EXPECT_EQ(mft().cmpiMalloc(&foreign, 8), nullptr);
}

TEST(Broker, RefusesToBeOneOfMoreThanSixtyFour) {
    const Repository repository;
    CapturingLog log;
    std::vector<std::unique_ptr<Broker>> brokers;
    for (int i = 0; i < 64; ++i) {
        brokers.push_back(std::make_unique<Broker>(repository, log, fillUpCalls));
    }
    EXPECT_THROW(Broker(repository, log, fillUpCalls), std::runtime_error);
    brokers.pop_back();
    EXPECT_NO_THROW(Broker(repository, log, fillUpCalls));
}

}  // namespace
}  // namespace cimhost
