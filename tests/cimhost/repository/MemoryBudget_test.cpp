#include "cimhost/repository/MemoryBudget.h"

#include "cimhost/repository/CimError.h"

#include <gtest/gtest.h>

#include <limits>

namespace cimhost {
namespace {

TEST(MemoryBudget, AddsUpToTheLimitAndNoFurther) {
    MemoryBudget budget;
    budget.charge(MemoryBudget::limit - 1);
    budget.charge(1);
    EXPECT_EQ(budget.used(), MemoryBudget::limit);
    EXPECT_THROW(budget.charge(1), CimError);
    EXPECT_NO_THROW(budget.charge(0));
}

TEST(MemoryBudget, IsNotFooledByAnOverflow) {
    MemoryBudget budget;
    budget.charge(10);
    EXPECT_THROW(budget.charge(std::numeric_limits<std::size_t>::max()), CimError);
    EXPECT_EQ(budget.used(), 10U);
}

TEST(MemoryBudget, SaysThatALimitOfTheServerIsReached) {
    MemoryBudget budget;
    try {
        budget.charge(MemoryBudget::limit + 1);
        FAIL();
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::serverLimitsExceeded);
        EXPECT_STREQ(error.what(), "the definitions take more than 128 MiB");
    }
}

}  // namespace
}  // namespace cimhost
