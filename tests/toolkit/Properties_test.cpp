#include "toolkit/Properties.h"

#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

using PYL::setArray;
using PYL::setKnown;

struct PropertiesTest : testing::Test {
    TestBroker host;
    CmpiCpp::CmpiInstance instance =
        CmpiCpp::makeCmpiInstance(host.broker(), PYL::makeLocalPath("PYL_Thing"));

    std::string shown() const { return instance.str(); }
};

TEST_F(PropertiesTest, OfANewInstanceAreTheKeysOfItsPath) {
    const auto path = PYL::makeLocalPath("PYL_Thing", {{"Name", "a"}, {"Slot", 2U}});
    const auto made = PYL::makeInstanceAt(path);
    EXPECT_EQ(made.getPath(), path);
    ASSERT_EQ(made.getPropertyCount(), 2U);
    EXPECT_EQ(made.getProperty("Name").asString(), "a");
    EXPECT_EQ(made.getProperty("Slot").asUint64(), 2U);
}

TEST_F(PropertiesTest, StayNullWhileTheValueIsUnknown) {
    setKnown(instance, "Speed", std::optional<std::uint64_t>());
    setKnown(instance, "Model", std::optional<std::string>());
    setKnown(instance, "Owner", "");
    setArray(instance, "Tags", std::vector<std::string>());
    EXPECT_EQ(shown(), "instance of PYL_Thing {}");
    EXPECT_EQ(instance.getPropertyCount(), 0U);
}

TEST_F(PropertiesTest, AreSetWhenTheValueIsKnown) {
    setKnown(instance, "Speed", std::optional<std::uint64_t>(0));
    setKnown(instance, "Model", std::optional<std::string>(""));
    setKnown(instance, "Owner", "me");
    EXPECT_EQ(shown(), "instance of PYL_Thing {Speed = 0; Model = \"\"; Owner = \"me\";}");
    EXPECT_EQ(instance.getProperty("Speed").getType(), CMPI_uint64);
}

TEST_F(PropertiesTest, HoldArraysOfTheTypeOfTheirValues) {
    setArray(instance, "Kinds", std::array<unsigned short, 2>{3, 5});
    setArray(instance, "Tags", std::vector<std::string>{"a", "b"});
    setArray(instance, "Words", std::array{"c", "d"});
    EXPECT_EQ(shown(),
              "instance of PYL_Thing {Kinds = {3, 5}; Tags = {\"a\", \"b\"}; "
              "Words = {\"c\", \"d\"};}");
    EXPECT_EQ(instance.getProperty("Kinds").getType(), CMPI_uint16);
    EXPECT_EQ(instance.getProperty("Words").getType(), CMPI_string);
}

TEST_F(PropertiesTest, KnowTheTypeOfAnArrayThatIsEmpty) {
    const auto array = PYL::makeArray(std::vector<std::string>());
    EXPECT_EQ(array.getSize(), 0U);
    EXPECT_EQ(array.getType(), CMPI_string);
}

}  // namespace
