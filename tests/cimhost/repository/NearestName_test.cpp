#include "cimhost/repository/NearestName.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace cimhost {
namespace {

std::string nearest(std::string_view written, const std::vector<std::string>& names) {
    NearestName nearest(written);
    for (const std::string& name : names) nearest.offer(name);
    return std::string(nearest.found());
}

TEST(NearestName, IsFoundForEachWayToMisspellOne) {
    const std::vector<std::string> names = {"TST_Fan", "TST_Temperature", "Speed"};
    EXPECT_EQ(nearest("TST_Fann", names), "TST_Fan") << "one too many";
    EXPECT_EQ(nearest("TST_Fa", names), "TST_Fan") << "one too few";
    EXPECT_EQ(nearest("TST_Fen", names), "TST_Fan") << "another";
    EXPECT_EQ(nearest("TST_Fna", names), "TST_Fan") << "swapped";
    EXPECT_EQ(nearest("Sepeed", names), "Speed");
    EXPECT_EQ(nearest("TST_Temprature", names), "TST_Temperature");
}

TEST(NearestName, IsTheOneThatDiffersInCaseAlone) {
    EXPECT_EQ(nearest("SERVE", {"servo", "serve"}), "serve");
}

TEST(NearestName, IsNoneForANameThatResemblesNothing) {
    EXPECT_EQ(nearest("Colour", {"Speed", "Name"}), "");
    EXPECT_EQ(nearest("TST_Cpu", {"TST_Fan"}), "") << "a common start is no resemblance";
    EXPECT_EQ(nearest("", {"a", "Speed"}), "");
    EXPECT_EQ(nearest("a", {"b"}), "");
    EXPECT_EQ(nearest("Speed", {}), "");
}

TEST(NearestName, IsTheSameInAnyOrder) {
    EXPECT_EQ(nearest("Fax", {"Fan", "Fat", "Far"}), "Fan");
    EXPECT_EQ(nearest("Fax", {"Far", "Fat", "Fan"}), "Fan");
    EXPECT_EQ(nearest("Speedd", {"Speeed", "Speed"}), "Speed");
}

TEST(NearestName, TakesNamesOfAnyLength) {
    const std::string longName(200, 'a');
    EXPECT_EQ(nearest(longName, {longName + "b", "a"}), "") << "not worth the time";
    const std::string name(100, 'a');
    EXPECT_EQ(nearest(name + "b", {name}), name);
}

TEST(DidYouMean, IsReadyToBePutBehindAMessage) {
    struct Named {
        std::string name;
    };
    const std::array<Named, 2> range = {{{"Speed"}, {"Name"}}};
    EXPECT_EQ(didYouMean("Sped", range, &Named::name), "; did you mean 'Speed'?");
    EXPECT_EQ(didYouMean("Colour", range, &Named::name), "");
}

}  // namespace
}  // namespace cimhost
