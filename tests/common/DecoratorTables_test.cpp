// The virtual tables of the decorators and of what they derive from, which modules that were built
// earlier call through: the order of the operations is part of the binary interface.

#include "common/AutostartDecorator.h"
#include "common/DecoratorUtils.h"
#include "common/LoggedProvider.h"
#include "common/PerfmonDecorator.h"
#include "tests/common/ProviderOperations.h"
#include "tests/common/VirtualTable.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

using PYL::LoggedProvider;

/// The operations, given in their order, stand one behind the other after the destructor's two
/// entries.
void expectOrder(const std::vector<int>& slots) {
    for (std::size_t i = 0; i < slots.size(); ++i) {
        EXPECT_EQ(slots[i], static_cast<int>(i) + 2) << "operation " << i;
    }
}

/// All decorators have the same primary table.
template <typename Decorator>
struct DecoratorTables : testing::Test {};
using Decorators =
    testing::Types<PYL::LoggedProvider, PYL::AutostartDecorator, PYL::PerfmonDecorator>;
TYPED_TEST_SUITE(DecoratorTables, Decorators);

TYPED_TEST(DecoratorTables, HoldThePrimaryTableInItsOrder) {
    using P = TypeParam;
    expectOrder({slotOf(&P::enumInstanceNames), slotOf(&P::enumInstances),
                 slotOf(&P::getInstance),       slotOf(&P::createInstance),
                 slotOf(&P::modifyInstance),    slotOf(&P::deleteInstance),
                 slotOf(&P::execQuery),         slotOf(&P::getBroker),
                 slotOf(&P::unloadOK),          slotOf(&P::cleanup),
                 slotOf(&P::invokeMethod),      slotOf(&P::associators),
                 slotOf(&P::associatorNames),   slotOf(&P::references),
                 slotOf(&P::referenceNames),    slotOf(&P::authorizeFilter),
                 slotOf(&P::mustPoll),          slotOf(&P::activateFilter),
                 slotOf(&P::deactivateFilter),  slotOf(&P::enableIndications),
                 slotOf(&P::disableIndications)});
}

TEST(ProviderTables, HoldTheTablesOfTheInterfacesInTheirOrder) {
    using namespace CmpiCpp;
    expectOrder({slotOf(&CmpiProvider::unloadOK), slotOf(&CmpiProvider::cleanup),
                 slotOf(&CmpiProvider::getBroker)});
    expectOrder(
        {slotOf(&CmpiInstanceProvider::enumInstanceNames),
         slotOf(&CmpiInstanceProvider::enumInstances), slotOf(&CmpiInstanceProvider::getInstance),
         slotOf(&CmpiInstanceProvider::createInstance),
         slotOf(&CmpiInstanceProvider::modifyInstance),
         slotOf(&CmpiInstanceProvider::deleteInstance), slotOf(&CmpiInstanceProvider::execQuery)});
    expectOrder({slotOf(&CmpiMethodProvider::invokeMethod)});
    expectOrder({slotOf(&CmpiAssociationProvider::associators),
                 slotOf(&CmpiAssociationProvider::associatorNames),
                 slotOf(&CmpiAssociationProvider::references),
                 slotOf(&CmpiAssociationProvider::referenceNames)});
    expectOrder({slotOf(&CmpiIndicationProvider::authorizeFilter),
                 slotOf(&CmpiIndicationProvider::mustPoll),
                 slotOf(&CmpiIndicationProvider::activateFilter),
                 slotOf(&CmpiIndicationProvider::deactivateFilter),
                 slotOf(&CmpiIndicationProvider::enableIndications),
                 slotOf(&CmpiIndicationProvider::disableIndications)});
}

template <typename... Value>
std::vector<int> methodResultSlots() {
    using Result = CmpiCpp::CmpiMethodResult;
    return {slotOf(static_cast<void (Result::*)(Value)>(&Result::deliver))...,
            slotOf(static_cast<void (Result::*)(const CmpiCpp::CmpiName&, Value)>(
                &Result::deliver))...};
}

TEST(ProviderTables, HoldTheResultsInTheirOrder) {
    using namespace CmpiCpp;
    expectOrder({slotOf(&CmpiObjectPathResult::deliver)});
    expectOrder({slotOf(&CmpiInstanceResult::deliver)});
    expectOrder(
        methodResultSlots<const CmpiData&, unsigned char, signed char, unsigned short, short,
                          unsigned int, int, unsigned long long, long long, float, double, bool,
                          const char*, const std::string&, const CmpiObjectPath&>());
}

CmpiCpp::CmpiProvider* noProvider(const CmpiCpp::CmpiBroker&, Logger&) {
    return nullptr;
}

/// The entry of an object's own table, which stands where the object begins.
const void* entryOf(const void* object, int slot) {
    const void* const* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return table[slot];
}

TEST(ProviderTables, LayTheBasesOutInTheirOrderRoundOneSharedProvider) {
    JournalLog log;
    LoggedProvider provider(CmpiCpp::CmpiBroker(nullptr), log.logger, noProvider);
    const auto at = [&](auto* base) {
        return reinterpret_cast<const char*>(base) - reinterpret_cast<const char*>(&provider);
    };
    constexpr auto word = static_cast<std::ptrdiff_t>(sizeof(void*));
    EXPECT_EQ(at(static_cast<CmpiCpp::CmpiInstanceProvider*>(&provider)), 0);
    EXPECT_EQ(at(static_cast<CmpiCpp::CmpiMethodProvider*>(&provider)), word);
    EXPECT_EQ(at(static_cast<CmpiCpp::CmpiAssociationProvider*>(&provider)), 2 * word);
    EXPECT_EQ(at(static_cast<CmpiCpp::CmpiIndicationProvider*>(&provider)), 3 * word);
    // The logger (two pointers' pairs) and the inner provider follow; the shared base comes last.
    const auto shared = at(static_cast<CmpiCpp::CmpiProvider*>(&provider));
    EXPECT_EQ(shared, 4 * word + static_cast<std::ptrdiff_t>(sizeof(Logger)) + word);
    EXPECT_EQ(at(static_cast<CmpiCpp::CmpiProvider*>(
                  static_cast<CmpiCpp::CmpiIndicationProvider*>(&provider))),
              shared);
}

TEST(ProviderTables, ReachTheSameOverridersThroughEveryInterface) {
    TestBroker host;
    JournalLog log;
    Request request(host, *log.journal);
    LoggedProvider provider(host.broker(), log.logger, noProvider);
    CmpiCpp::CmpiProvider& base = provider;
    CmpiCpp::CmpiMethodProvider& methods = provider;
    CmpiCpp::CmpiAssociationProvider& associations = provider;
    CmpiCpp::CmpiIndicationProvider& indications = provider;
    log.journal->take();
    base.cleanup(request.context, true);
    EXPECT_THROW(
        methods.invokeMethod(request.context, request.path, "M", request.arguments, request.method),
        CmpiCpp::CmpiStatus);
    EXPECT_THROW(associations.referenceNames(request.context, request.path, "", "", request.paths),
                 CmpiCpp::CmpiStatus);
    EXPECT_THROW(indications.enableIndications(request.context), CmpiCpp::CmpiStatus);
    EXPECT_EQ(log.journal->take().size(), 8U);
    // The entries of the primary table and of the interfaces differ (the latter adjust `this`
    // first).
    EXPECT_NE(entryOf(&provider, slotOf(&LoggedProvider::invokeMethod)),
              entryOf(&methods, slotOf(&CmpiCpp::CmpiMethodProvider::invokeMethod)));
}

}  // namespace
