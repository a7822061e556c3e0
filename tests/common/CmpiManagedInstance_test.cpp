#include "common/CmpiManagedInstance.h"

#include "cmpicpp/CmpiStatus.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/common/VirtualTable.h"
#include "tests/support/Things.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using PYL::CmpiManagedInstance;
using PYL::CmpiManagedInstanceAssociation;
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
