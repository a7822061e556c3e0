#include "common/CmpiManagedInstance.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/common/VirtualTable.h"
#include "tests/support/Things.h"

#include <gtest/gtest.h>

#include <concepts>
#include <type_traits>
#include <vector>

namespace {

using PYL::CmpiManagedInstance;
using PYL::CmpiManagedInstanceAssociation;
using PYL::CmpiManagedInstanceCollection;
using PYL::CmpiManagedInstanceMultiAssociation;

static_assert(std::has_virtual_destructor_v<CmpiManagedInstance>);
static_assert(std::is_abstract_v<CmpiManagedInstance>);
static_assert(std::is_abstract_v<CmpiManagedInstanceAssociation>);
static_assert(std::is_abstract_v<CmpiManagedInstanceMultiAssociation>);
// The associations add no data, and neither is the other.
static_assert(sizeof(CmpiManagedInstanceAssociation) == sizeof(CmpiManagedInstance));
static_assert(sizeof(CmpiManagedInstanceMultiAssociation) == sizeof(CmpiManagedInstance));
static_assert(
    !std::is_base_of_v<CmpiManagedInstanceAssociation, CmpiManagedInstanceMultiAssociation>);
static_assert(
    !std::is_base_of_v<CmpiManagedInstanceMultiAssociation, CmpiManagedInstanceAssociation>);

/// An instance with a value of its own.
template <typename Base>
struct Numbered : Base {
    int number = 0;
    CmpiCpp::CmpiObjectPath getPath() override { return {}; }
    CmpiCpp::CmpiInstance getInstance() override { return {}; }
    CmpiCpp::CmpiName getClassName() override { return "PYL_Thing"; }
};

struct NumberedLink : Numbered<CmpiManagedInstanceAssociation> {
    CmpiCpp::CmpiObjectPath getAssociatedPath(const CmpiCpp::CmpiObjectPath&) override {
        return {};
    }
};

struct NumberedMultiLink : Numbered<CmpiManagedInstanceMultiAssociation> {
    std::vector<CmpiCpp::CmpiObjectPath> getAssociatedPaths(
        const CmpiCpp::CmpiObjectPath&) override {
        return {};
    }
};

// A provider may copy its instances; a collection owns its own and is not copied.
static_assert(std::copyable<Numbered<CmpiManagedInstance>>);
static_assert(std::copyable<NumberedLink>);
static_assert(std::copyable<NumberedMultiLink>);
static_assert(!std::is_copy_constructible_v<CmpiManagedInstanceCollection>);
static_assert(!std::is_copy_assignable_v<CmpiManagedInstanceCollection>);

struct CmpiManagedInstanceTest : testing::Test {
    TestBroker host;
    Calls calls;
    Thing thing{host, calls, host.path("PYL_Thing", "a")};
};

TEST_F(CmpiManagedInstanceTest, IsVisibleUntilItIsHidden) {
    const CmpiManagedInstance& constant = thing;
    EXPECT_TRUE(constant.visible());
    thing.setVisible(false);
    EXPECT_FALSE(constant.visible());
    thing.setVisible(true);
    EXPECT_TRUE(constant.visible());
}

TEST(CmpiManagedInstanceCopy, IsAsVisibleAsTheOriginalAndThenStandsAlone) {
    Numbered<CmpiManagedInstance> original;
    original.number = 7;
    original.setVisible(false);
    auto copy = original;
    EXPECT_FALSE(copy.visible());
    EXPECT_EQ(copy.number, 7);
    original.setVisible(true);
    EXPECT_FALSE(copy.visible());
    copy = original;
    EXPECT_TRUE(copy.visible());
}

TEST_F(CmpiManagedInstanceTest, KnowsNoMethodUnlessOneIsWritten) {
    Journal journal;
    CapturedMethodResult result(journal);
    EXPECT_EQ(outcomeOf([&] { thing.invokeMethod("PerformWork", CmpiCpp::CmpiArgs(), result); }),
              "status 17 ");
    EXPECT_EQ(journal.take(), Lines{});
}

TEST(CmpiManagedInstanceTable, HasTheOperationsInTheirOrder) {
    EXPECT_EQ(slotOf(&CmpiManagedInstance::getPath), 2);  // after the two entries of the destructor
    EXPECT_EQ(slotOf(&CmpiManagedInstance::getInstance), 3);
    EXPECT_EQ(slotOf(&CmpiManagedInstance::invokeMethod), 4);
    EXPECT_EQ(slotOf(&CmpiManagedInstance::getClassName), 5);
    EXPECT_EQ(slotOf(&CmpiManagedInstanceAssociation::getAssociatedPath), 6);
    EXPECT_EQ(slotOf(&CmpiManagedInstanceMultiAssociation::getAssociatedPaths), 6);
}

}  // namespace
