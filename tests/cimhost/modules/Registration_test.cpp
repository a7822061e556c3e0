#include "cimhost/modules/Registration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

std::string refusalOf(std::string_view text) {
    Registrations registrations;
    try {
        registrations.readText(text, "fans.registration");
    } catch (const RegistrationError& error) {
        return error.what();
    }
    return {};
}

TEST(Registration, ReadsEveryFieldOfALine) {
    Registrations registrations;
    registrations.readText("ACME_Fan root/cimv2 FanProvider acmeFans instance method\n", "x");
    const Registration* const found =
        registrations.find(ProviderType::instance, "root/cimv2", "ACME_Fan");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->className, "ACME_Fan");
    EXPECT_EQ(found->nameSpace, "root/cimv2");
    EXPECT_EQ(found->provider, "FanProvider");
    EXPECT_EQ(found->module, "acmeFans");
    EXPECT_TRUE(found->serves(ProviderType::instance));
    EXPECT_TRUE(found->serves(ProviderType::method));
    EXPECT_FALSE(found->serves(ProviderType::association));
    EXPECT_FALSE(found->serves(ProviderType::indication));
}

TEST(Registration, FindsByTypeNamespaceAndClassWithoutRegardToCase) {
    Registrations registrations;
    registrations.readText("ACME_Fan root/cimv2 P m instance\n", "x");
    EXPECT_NE(registrations.find(ProviderType::instance, "/ROOT/CimV2/", "acme_fan"), nullptr);
    EXPECT_EQ(registrations.find(ProviderType::method, "root/cimv2", "ACME_Fan"), nullptr);
    EXPECT_EQ(registrations.find(ProviderType::instance, "interop", "ACME_Fan"), nullptr);
    EXPECT_EQ(registrations.find(ProviderType::instance, "root/cimv2", "ACME_Fans"), nullptr);
}

TEST(Registration, PassesOverCommentsAndBlankLines) {
    Registrations registrations;
    registrations.readText("# Class Namespace\n\n   \t\nA n P m instance # the only one\n", "x");
    EXPECT_EQ(registrations.all().size(), 1U);
}

TEST(Registration, ToleratesLinesThatEndInCarriageReturn) {
    Registrations registrations;
    registrations.readText("A n P m instance\r\nB n P m association\r\n", "x");
    EXPECT_NE(registrations.find(ProviderType::instance, "n", "A"), nullptr);
    EXPECT_NE(registrations.find(ProviderType::association, "n", "B"), nullptr);
}

TEST(Registration, ReadsALastLineWithoutItsEnd) {
    Registrations registrations;
    registrations.readText("A n P m instance", "x");
    EXPECT_EQ(registrations.all().size(), 1U);
}

TEST(Registration, KeepsOneClassInSeveralNamespacesApart) {
    Registrations registrations;
    registrations.readText("A root/a P m instance\nA root/b P m instance\n", "x");
    EXPECT_EQ(registrations.find(ProviderType::instance, "root/a", "A")->nameSpace, "root/a");
    EXPECT_EQ(registrations.find(ProviderType::instance, "root/b", "A")->nameSpace, "root/b");
}

TEST(Registration, ListsATypeOfANamespaceInOrder) {
    Registrations registrations;
    registrations.readText("B n P m association\nA n P m association instance\nC n P m instance\n",
                           "x");
    const auto& found = registrations.all(ProviderType::association, "n");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]->className, "B");
    EXPECT_EQ(found[1]->className, "A");
    EXPECT_TRUE(registrations.all(ProviderType::association, "other").empty());
}

TEST(Registration, NamesFileLineAndUnknownType) {
    EXPECT_EQ(refusalOf("# one\nA n P m instanse\n"),
              "fans.registration:2: unknown type 'instanse' (known are instance, association, "
              "method, indication)");
}

TEST(Registration, NamesTheMissingField) {
    EXPECT_THAT(refusalOf("A\n"),
                testing::HasSubstr("fans.registration:1: the namespace is missing"));
    EXPECT_THAT(refusalOf("A n\n"), testing::HasSubstr("the provider is missing"));
    EXPECT_THAT(refusalOf("A n P\n"), testing::HasSubstr("the module is missing"));
    EXPECT_THAT(refusalOf("A n P m\n"), testing::HasSubstr("the type is missing"));
}

TEST(Registration, RefusesTheSameLineTwice) {
    EXPECT_EQ(refusalOf("A n P m instance\na N P m instance\n"),
              "fans.registration:2: instance of class a in namespace N is registered for provider "
              "P already");
    EXPECT_NE(refusalOf("A n P m association\nA n P m association\n"), "");
}

TEST(Registration, RefusesTheSameTypeTwiceInALine) {
    EXPECT_EQ(refusalOf("A n P m instance instance\n"),
              "fans.registration:1: type 'instance' is given twice");
}

TEST(Registration, RefusesTwoProvidersForInstancesOrMethodsOfAClass) {
    EXPECT_NE(refusalOf("A n P m instance\nA n Q m instance\n"), "");
    EXPECT_NE(refusalOf("A n P m method\nA n Q m method\n"), "");
    EXPECT_EQ(refusalOf("A n P m association\nA n Q m association\n"), "");
    EXPECT_EQ(refusalOf("A n P m instance\nA n Q m method\n"), "");
}

TEST(Registration, RefusesAProviderInTwoModules) {
    EXPECT_EQ(refusalOf("A n P m instance\nB n P other instance\n"),
              "fans.registration:2: provider P is registered in module m already");
}

TEST(Registration, RefusesNamesThatCannotBe) {
    EXPECT_THAT(refusalOf("1A n P m instance\n"), testing::HasSubstr("'1A' is not a class name"));
    EXPECT_THAT(refusalOf("A / P m instance\n"), testing::HasSubstr("'' is not a namespace"));
    EXPECT_THAT(refusalOf("A n P-Q m instance\n"), testing::HasSubstr("not a provider name"));
}

TEST(Registration, RefusesModulesOutsideTheFolders) {
    EXPECT_THAT(refusalOf("A n P ../evil instance\n"),
                testing::HasSubstr("'../evil' is not the base name of a module"));
}

TEST(Registration, KeepsWhatCameBeforeABrokenLine) {
    Registrations registrations;
    EXPECT_THROW(registrations.readText("A n P m instance\nB\n", "x"), RegistrationError);
    EXPECT_EQ(registrations.all().size(), 1U);
}

TEST(Registration, ChecksAcrossFiles) {
    Registrations registrations;
    registrations.readText("A n P m instance\n", "one");
    EXPECT_THROW(registrations.readText("A n P m instance\n", "two"), RegistrationError);
}

TEST(Registration, NamesAFileThatCannotBeRead) {
    Registrations registrations;
    try {
        registrations.readFile("/nonexistent/fans.registration");
        FAIL();
    } catch (const RegistrationError& error) {
        EXPECT_STREQ(error.what(),
                     "/nonexistent/fans.registration: cannot be read: No such file or directory");
    }
}

TEST(Registration, RefusesAFolderInPlaceOfAFile) {
    Registrations registrations;
    EXPECT_THROW(registrations.readFile("/"), RegistrationError);
}

TEST(Registration, StaysGoodWhenMoved) {
    Registrations first;
    first.readText("A n P m instance\n", "x");
    const Registrations second = std::move(first);
    EXPECT_EQ(second.find(ProviderType::instance, "n", "A"), &second.all().front());
}

}  // namespace
}  // namespace cimhost
