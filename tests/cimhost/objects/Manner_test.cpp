#include "cimhost/objects/Manner.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace cimhost {
namespace {

bool haveSameHabits(const Manner& one, const Manner& other) {
    for (const HabitRow& row : habitRows()) {
        if (one.has(row.habit) != other.has(row.habit)) return false;
    }
    return true;
}

TEST(MannerTest, HasNoHabitsByDefault) {
    EXPECT_TRUE(Manner().isStandard());
    EXPECT_EQ(Manner().name(), "standard");
    EXPECT_TRUE(Manner("standard").isStandard());
}

TEST(MannerTest, HasTheHabitsOfItsHost) {
    for (const HabitRow& row : habitRows()) {
        EXPECT_EQ(Manner("openpegasus").has(row.habit), (row.hosts & HabitRow::openPegasus) != 0);
        EXPECT_EQ(Manner("sfcb").has(row.habit), (row.hosts & HabitRow::sfcb) != 0);
        EXPECT_EQ(Manner("strict").has(row.habit), (row.hosts & HabitRow::strict) != 0);
        EXPECT_EQ(Manner("mean").has(row.habit), (row.hosts & HabitRow::mean) != 0);
    }
}

TEST(MannerTest, TakesAPartOfMeanBySeed) {
    for (const char* name : {"mean:0", "mean:1", "mean:4294967295"}) {
        const Manner some(name);
        EXPECT_TRUE(haveSameHabits(some, Manner(name)));
        EXPECT_FALSE(haveSameHabits(some, Manner("mean")));
        for (const HabitRow& row : habitRows()) {
            EXPECT_TRUE(!some.has(row.habit) || Manner("mean").has(row.habit)) << row.name;
        }
    }
    EXPECT_FALSE(haveSameHabits(Manner("mean:1"), Manner("mean:2")));
}

TEST(MannerTest, RefusesOtherNames) {
    for (const char* name : {"", "Standard", "pegasus", "mean:", "mean:x", "mean:-1", "mean:1 ",
                             "mean:4294967296", "standard:1"}) {
        EXPECT_THROW(Manner{name}, std::invalid_argument) << name;
    }
}

TEST(MannerTest, SaysEachHabitInWords) {
    for (const HabitRow& row : habitRows()) {
        EXPECT_TRUE(row.says.ends_with('.')) << row.name;
        EXPECT_NE(row.hosts, 0) << row.name;
        EXPECT_FALSE(row.library.empty()) << row.name;
        EXPECT_FALSE(row.provider.empty()) << row.name;
    }
}

}  // namespace
}  // namespace cimhost
