#include "cimhost/modules/Registration.h"

#include "tests/support/Thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

std::string refusalOf(std::string_view text) {
    Registrations registrations;
    return cimhost::refusalOf<RegistrationError>(
        [&] { registrations.readText(text, "fans.registration"); });
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
              "method, indication); did you mean 'instance'?");
}

TEST(Registration, NamesTheMissingField) {
    EXPECT_THAT(refusalOf("A\n"),
                testing::HasSubstr("fans.registration:1: the namespace is missing"));
    EXPECT_THAT(refusalOf("A n\n"), testing::HasSubstr("the provider is missing"));
    EXPECT_THAT(refusalOf("A n P\n"), testing::HasSubstr("the module is missing"));
    EXPECT_THAT(refusalOf("A n P m\n"), testing::HasSubstr("the type is missing"));
}

TEST(Registration, TakesALineThatIsRepeatedWithAWarning) {
    Registrations registrations;
    registrations.readText("A n P m instance\nA /n/  P m instance # again\n", "one");
    registrations.readText("B n P m association\nA n P m instance\n", "two");
    EXPECT_EQ(registrations.all().size(), 2U);
    EXPECT_THAT(
        registrations.warnings(),
        testing::ElementsAre("one:2: class A in namespace n is registered in these words already",
                             "two:2: class A in namespace n is registered in these words already"));
    registrations.readText("C n Q other method\nC n Q other method\n", "three");
    EXPECT_THAT(registrations.warnings("other"),
                testing::ElementsAre(testing::StartsWith("three:2: class C in namespace n")));
    EXPECT_EQ(registrations.clone().warnings(), registrations.warnings());
}

TEST(Registration, RefusesALineThatOverlapsWithAnother) {
    EXPECT_EQ(refusalOf("A n P m instance\na N P m instance method\n"),
              "fans.registration:2: instance of class a in namespace N is registered for provider "
              "P already");
    EXPECT_NE(refusalOf("A n P m association\nA n P m association method\n"), "");
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
    EXPECT_THROW(registrations.readText("A n Q m instance\n", "two"), RegistrationError);
}

TEST(Registration, ReadsSections) {
    Registrations registrations;
    registrations.readText(
        "# as another host has them\n"
        "[ACME_Fan]\n"
        "   provider: FanProvider\n"
        "   Location:acmeFans\n"
        "   type: instance method  # not its associations\n"
        "   namespace: root/cimv2 interop\n"
        "   unload: never\n"
        "   parameters: -x [y] z: 1\n"
        "#\n"
        "[ACME_Alert]\r\n"
        "provider: AlertProvider\r\n"
        "location: acmeFans\r\n"
        "type: indication\r\n"
        "namespace: root/cimv2",
        "x");
    ASSERT_EQ(registrations.all().size(), 3U);
    const Registration* const fan = registrations.find(ProviderType::method, "interop", "ACME_Fan");
    ASSERT_NE(fan, nullptr);
    EXPECT_EQ(fan->provider, "FanProvider");
    EXPECT_EQ(fan->module, "acmeFans");
    EXPECT_TRUE(fan->serves(ProviderType::instance));
    EXPECT_FALSE(fan->serves(ProviderType::association));
    EXPECT_NE(registrations.find(ProviderType::instance, "root/cimv2", "ACME_Fan"), nullptr);
    EXPECT_NE(registrations.find(ProviderType::indication, "root/cimv2", "ACME_Alert"), nullptr);
}

TEST(Registration, TakesASectionThatIsRepeatedWithAWarning) {
    const std::string_view section =
        "[A]\nprovider: P\nlocation: m\ntype: instance\nnamespace: n\n";
    Registrations registrations;
    registrations.readText(section, "one");
    registrations.readText(section, "two");
    EXPECT_EQ(registrations.all().size(), 1U);
    EXPECT_THAT(
        registrations.warnings(),
        testing::ElementsAre("two:1: class A in namespace n is registered in these words already"));
}

TEST(Registration, NamesFileAndLineOfABrokenSection) {
    EXPECT_EQ(refusalOf("[A]\nprovider: P\ntype: instance\nnamespace: n\n[B]\n"),
              "fans.registration:1: the location is missing in [A]");
    EXPECT_EQ(refusalOf("\n[A]\n"), "fans.registration:2: the provider is missing in [A]");
    EXPECT_EQ(refusalOf("[A]\nprovider P\n"),
              "fans.registration:2: 'provider P' is no line 'key: value'");
    EXPECT_EQ(refusalOf("[A]\nmodule: m\n"),
              "fans.registration:2: unknown key 'module' (known are provider, location, type, "
              "namespace, unload, parameters, group, user)");
    EXPECT_EQ(refusalOf("[A]\ntype: instance\nType: method\n"),
              "fans.registration:3: the type is given twice");
    EXPECT_THAT(refusalOf("[A]\ntype: filter\n"),
                testing::StartsWith("fans.registration:2: unknown type 'filter'"));
    EXPECT_EQ(refusalOf("[A\n"), "fans.registration:1: '[A' is no section '[Class]'");
    EXPECT_EQ(refusalOf("[]\nprovider: P\nlocation: m\ntype: instance\nnamespace: n\n"),
              "fans.registration:1: '' is not a class name");
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

TEST(Registration, KeepsWhatItRefusesWhenItIsToldTo) {
    Registrations registrations;
    registrations.keepErrors();
    registrations.readText("A n P\nB n P M instance\nC n P M instanse\n", "r");
    registrations.readFile("/absent");
    ASSERT_EQ(registrations.errors().size(), 3U);
    EXPECT_THAT(registrations.errors()[0], testing::StartsWith("r:1: "));
    EXPECT_THAT(registrations.errors()[1], testing::StartsWith("r:3: "));
    EXPECT_THAT(registrations.errors()[2], testing::StartsWith("/absent: cannot be read: "));
    EXPECT_EQ(registrations.all().size(), 1U);
}

TEST(Registration, KnowsWhereItIsWritten) {
    Registrations registrations;
    registrations.readText("\nB n P M instance\n", "r");
    registrations.readText("[C]\nprovider: P\nlocation: M\ntype: instance\nnamespace: n\n", "s");
    EXPECT_EQ(registrations.all()[0].place, "r:2");
    EXPECT_EQ(registrations.all()[1].place, "s:1");
}

}  // namespace
}  // namespace cimhost
