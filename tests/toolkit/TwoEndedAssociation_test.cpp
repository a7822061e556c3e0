#include "toolkit/TwoEndedAssociation.h"

#include "cmpicpp/CmpiData.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/common/Failures.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using CmpiCpp::CmpiObjectPath;
using PYL::AssociationClass;
using PYL::TwoEndedAssociation;

constexpr AssociationClass linkClass{"PYL_Link", "Antecedent", "Dependent"};

struct TwoEndedAssociationTest : testing::Test {
    TestBroker host;
    TwoEndedAssociation::End at(const char* key) {
        return [this, key] { return host.path("PYL_Thing", key); };
    }
    TwoEndedAssociation link{linkClass, at("1"), at("2")};
    std::string linkText(const char* nameSpace) const {
        return host
            .path("PYL_Link",
                  {{"Antecedent", host.path("PYL_Thing", "1")},
                   {"Dependent", host.path("PYL_Thing", "2")}},
                  nameSpace)
            .str();
    }
};

TEST_F(TwoEndedAssociationTest, HasItsEndsAsKeysAndPropertiesOnThisHost) {
    EXPECT_EQ(link.getClassName().str(), "PYL_Link");
    EXPECT_EQ(link.getPath().str(), linkText("root/ktq"));
    const auto instance = link.getInstance();
    EXPECT_EQ(instance.getPath(), link.getPath());
    ASSERT_EQ(instance.getPropertyCount(), 2U);
    EXPECT_EQ(instance.getProperty("Antecedent").asObjectPath(), host.path("PYL_Thing", "1"));
    EXPECT_EQ(instance.getProperty("Dependent").asObjectPath(), host.path("PYL_Thing", "2"));
}

TEST_F(TwoEndedAssociationTest, StandsInTheNamespaceThatItWasMadeFor) {
    TwoEndedAssociation elsewhere(linkClass, at("1"), at("2"), "interop");
    EXPECT_EQ(elsewhere.getPath().str(), linkText("interop"));
}

TEST_F(TwoEndedAssociationTest, LeadsFromEachEndToTheOther) {
    EXPECT_EQ(link.getAssociatedPath(host.path("PYL_Thing", "1")), host.path("PYL_Thing", "2"));
    EXPECT_EQ(link.getAssociatedPath(host.path("PYL_Thing", "2")), host.path("PYL_Thing", "1"));
}

TEST_F(TwoEndedAssociationTest, LeadsNowhereFromAnythingElse) {
    EXPECT_TRUE(link.getAssociatedPath(host.path("PYL_Thing", "3")).empty());
    EXPECT_TRUE(link.getAssociatedPath(host.path("PYL_SpecialThing", "1")).empty());
    EXPECT_TRUE(link.getAssociatedPath({}).empty());
    auto elsewhere = host.path("PYL_Thing", "1");
    elsewhere.setHost("elsewhere");
    EXPECT_TRUE(link.getAssociatedPath(elsewhere).empty());
}

TEST_F(TwoEndedAssociationTest, AsksForItsEndsEachTime) {
    const char* key = "1";
    TwoEndedAssociation moving(
        linkClass, [&] { return host.path("PYL_Thing", key); }, at("2"));
    EXPECT_FALSE(moving.getAssociatedPath(host.path("PYL_Thing", "1")).empty());
    key = "3";
    EXPECT_TRUE(moving.getAssociatedPath(host.path("PYL_Thing", "1")).empty());
    EXPECT_EQ(moving.getAssociatedPath(host.path("PYL_Thing", "2")), host.path("PYL_Thing", "3"));
}

TEST_F(TwoEndedAssociationTest, PassesOnWhatAnEndThrows) {
    TwoEndedAssociation broken(linkClass, at("1"),
                               []() -> CmpiObjectPath { throw std::runtime_error("no end"); });
    EXPECT_EQ(outcomeOf([&] { broken.getPath(); }), "exception no end");
    EXPECT_EQ(outcomeOf([&] { broken.getInstance(); }), "exception no end");
    EXPECT_EQ(outcomeOf([&] { broken.getAssociatedPath({}); }), "exception no end");
}

}  // namespace
