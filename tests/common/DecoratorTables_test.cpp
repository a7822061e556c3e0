// The virtual tables of the decorators and of what they derive from, which modules that were built
// earlier call through: the order of the operations is part of the binary interface.

#include "common/AutostartDecorator.h"
#include "common/DecoratorUtils.h"
#include "common/LoggedProvider.h"
#include "common/PerfmonDecorator.h"
#include "tests/common/ProviderOperations.h"
#include "tests/common/VirtualTable.h"

#include <cxxabi.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>
#include <iterator>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiAssociationProvider;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiIndicationProvider;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiInstanceProvider;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiMethodProvider;
using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;
using CmpiCpp::CmpiProvider;
using CmpiCpp::CmpiStatus;
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

/// What is to be called with these arguments: exactly, and as the decorator's own, since a member
/// that a class inherits has a type of the base's.
template <typename Member>
struct Is {
    template <typename Actual>
    void operator()(Actual) const {
        static_assert(std::is_same_v<Actual, Member>);
    }
};

TYPED_TEST(DecoratorTables, OverrideEveryOperationThemselvesWithItsSignature) {
    using P = TypeParam;
    using Context = const CmpiContext&;
    using Path = const CmpiObjectPath&;
    using Instance = const CmpiInstance&;
    using Name = const CmpiName&;
    using Text = const std::string&;
    using Filter = const CMPISelectExp*;
    using List = const char**;
    using Paths = CmpiObjectPathResult&;
    using Instances = CmpiInstanceResult&;
    Is<void (P::*)(Context, Path, Paths)>{}(&P::enumInstanceNames);
    Is<void (P::*)(Context, Path, List, Instances)>{}(&P::enumInstances);
    Is<void (P::*)(Context, Path, List, Instances)>{}(&P::getInstance);
    Is<void (P::*)(Context, Path, Instance, Paths)>{}(&P::createInstance);
    Is<void (P::*)(Context, Path, Instance, List)>{}(&P::modifyInstance);
    Is<void (P::*)(Context, Path)>{}(&P::deleteInstance);
    Is<void (P::*)(Context, Path, Text, Text, Paths)>{}(&P::execQuery);
    Is<CMPIBroker* (P::*)()>{}(&P::getBroker);
    Is<int (P::*)(Context)>{}(&P::unloadOK);
    Is<void (P::*)(Context, bool)>{}(&P::cleanup);
    Is<void (P::*)(Context, Path, Name, const CmpiArgs&, CmpiMethodResult&)>{}(&P::invokeMethod);
    Is<void (P::*)(Context, Path, Name, Name, Name, Name, List, Instances)>{}(&P::associators);
    Is<void (P::*)(Context, Path, Name, Name, Name, Name, Paths)>{}(&P::associatorNames);
    Is<void (P::*)(Context, Path, Name, Name, List, Instances)>{}(&P::references);
    Is<void (P::*)(Context, Path, Name, Name, Paths)>{}(&P::referenceNames);
    Is<void (P::*)(Context, Filter, Text, Path, Text)>{}(&P::authorizeFilter);
    Is<void (P::*)(Context, Filter, Text, Path)>{}(&P::mustPoll);
    Is<void (P::*)(Context, Filter, Text, Path, bool)>{}(&P::activateFilter);
    Is<void (P::*)(Context, Filter, Text, Path, bool)>{}(&P::deactivateFilter);
    Is<void (P::*)(Context)>{}(&P::enableIndications);
    Is<void (P::*)(Context)>{}(&P::disableIndications);
}

/// By the description of the class that dynamic_cast reads: what stands between a class and its
/// interfaces would be its one base.
TYPED_TEST(DecoratorTables, DeriveFromTheFourInterfacesDirectlyInTheirOrder) {
    const auto* const type = dynamic_cast<const abi::__vmi_class_type_info*>(&typeid(TypeParam));
    ASSERT_TRUE(type);
    const std::type_info* const interfaces[] = {
        &typeid(CmpiInstanceProvider), &typeid(CmpiMethodProvider),
        &typeid(CmpiAssociationProvider), &typeid(CmpiIndicationProvider)};
    ASSERT_EQ(type->__base_count, std::size(interfaces));
    for (unsigned i = 0; i < type->__base_count; ++i) {
        const auto& base = type->__base_info[i];
        EXPECT_TRUE(*base.__base_type == *interfaces[i]) << base.__base_type->name();
        EXPECT_TRUE(base.__is_public_p());
        EXPECT_FALSE(base.__is_virtual_p());
        EXPECT_EQ(base.__offset(), static_cast<std::ptrdiff_t>(i * sizeof(void*)));
    }
}

/// Four tables, the members, and the shared base, which comes last.
template <typename... Members>
constexpr std::size_t sizeWith = 4 * sizeof(void*) + (sizeof(Members) + ...) + sizeof(CmpiProvider);
static_assert(sizeof(PYL::LoggedProvider) == sizeWith<Logger, void*>);
static_assert(sizeof(PYL::PerfmonDecorator) == sizeWith<CmpiBroker, Logger, void*>);
static_assert(sizeof(PYL::AutostartDecorator) ==
              sizeWith<CmpiBroker, Logger, void*, void*, pthread_mutex_t, void*>);

TEST(ProviderTables, HoldTheTablesOfTheInterfacesInTheirOrder) {
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
    using Result = CmpiMethodResult;
    return {slotOf(static_cast<void (Result::*)(Value)>(&Result::deliver))...,
            slotOf(static_cast<void (Result::*)(const CmpiName&, Value)>(&Result::deliver))...};
}

TEST(ProviderTables, HoldTheResultsInTheirOrder) {
    expectOrder({slotOf(&CmpiObjectPathResult::deliver)});
    expectOrder({slotOf(&CmpiInstanceResult::deliver)});
    expectOrder(
        methodResultSlots<const CmpiData&, unsigned char, signed char, unsigned short, short,
                          unsigned int, int, unsigned long long, long long, float, double, bool,
                          const char*, const std::string&, const CmpiObjectPath&>());
}

CmpiProvider* noProvider(const CmpiBroker&, Logger&) { return nullptr; }

/// The entry of an object's own table, which stands where the object begins.
const void* entryOf(const void* object, int slot) {
    const void* const* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return table[slot];
}

TEST(ProviderTables, LayTheBasesOutInTheirOrderRoundOneSharedProvider) {
    JournalLog log;
    LoggedProvider provider(CmpiBroker(nullptr), log.logger, noProvider);
    const auto at = [&](auto* base) {
        return reinterpret_cast<const char*>(base) - reinterpret_cast<const char*>(&provider);
    };
    constexpr auto word = static_cast<std::ptrdiff_t>(sizeof(void*));
    EXPECT_EQ(at(static_cast<CmpiInstanceProvider*>(&provider)), 0);
    EXPECT_EQ(at(static_cast<CmpiMethodProvider*>(&provider)), word);
    EXPECT_EQ(at(static_cast<CmpiAssociationProvider*>(&provider)), 2 * word);
    EXPECT_EQ(at(static_cast<CmpiIndicationProvider*>(&provider)), 3 * word);
    // The logger (two pointers' pairs) and the inner provider follow; the shared base comes last.
    const auto shared = at(static_cast<CmpiProvider*>(&provider));
    EXPECT_EQ(shared, 4 * word + static_cast<std::ptrdiff_t>(sizeof(Logger)) + word);
    EXPECT_EQ(at(static_cast<CmpiProvider*>(static_cast<CmpiIndicationProvider*>(&provider))),
              shared);
}

TEST(ProviderTables, ReachTheSameOverridersThroughEveryInterface) {
    TestBroker host;
    JournalLog log;
    Request request(host, *log.journal);
    LoggedProvider provider(host.broker(), log.logger, noProvider);
    CmpiProvider& base = provider;
    CmpiMethodProvider& methods = provider;
    CmpiAssociationProvider& associations = provider;
    CmpiIndicationProvider& indications = provider;
    log.journal->take();
    base.cleanup(request.context, true);
    EXPECT_THROW(
        methods.invokeMethod(request.context, request.path, "M", request.arguments, request.method),
        CmpiStatus);
    EXPECT_THROW(associations.referenceNames(request.context, request.path, "", "", request.paths),
                 CmpiStatus);
    EXPECT_THROW(indications.enableIndications(request.context), CmpiStatus);
    EXPECT_EQ(log.journal->take().size(), 8U);
    // The entries of the primary table and of the interfaces differ (the latter adjust `this`
    // first).
    EXPECT_NE(entryOf(&provider, slotOf(&LoggedProvider::invokeMethod)),
              entryOf(&methods, slotOf(&CmpiMethodProvider::invokeMethod)));
}

}  // namespace
