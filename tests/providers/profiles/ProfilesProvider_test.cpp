#include "providers/profiles/ProfilesProvider.h"

#include "tests/common/QuietResults.h"
#include "tests/providers/profiles/ProfilesFixture.h"

#include <gmock/gmock.h>

namespace {

using cimtest::failureOf;
using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;
using testing::UnorderedElementsAre;

struct ProfilesProviderTest : ProfilesFixture {
    profiles::ProfilesProvider& provider =
        host.serve(std::make_unique<profiles::ProfilesProvider>(host.broker(), host.logger()),
                   {"interop:PYL_RegisteredProfile", "interop:PYL_ReferencedProfile",
                    "interop:PYL_ExtendsProfile", "interop:PYL_ElementConformsToProfile",
                    "root/ktq:PYL_ElementConformsToProfile", "root/ktq:PYL_PXDataCollection"});

    Lines referenceClasses(const Path& path, const std::string& resultClass = "") {
        Lines classes;
        for (const auto& link : host.referenceNames(path, {.resultClass = resultClass})) {
            classes.push_back(link.className());
        }
        return classes;
    }
    static Path collection() {
        return {"PYL_PXDataCollection", {{"InstanceID", "KTQ:PYL_PXDataCollection:1"}}};
    }
};

TEST_F(ProfilesProviderTest, ServesEachClassInItsNamespaces) {
    EXPECT_EQ(host.names("interop:PYL_RegisteredProfile").size(), 49U);
    EXPECT_EQ(host.names("interop:PYL_ReferencedProfile").size(), 32U);
    EXPECT_EQ(host.names("interop:PYL_ExtendsProfile").size(), 19U);
    EXPECT_EQ(host.names("interop:PYL_ElementConformsToProfile").size(), 2U);  // and the collection
    EXPECT_EQ(host.names("PYL_ElementConformsToProfile").size(), 2U);
    EXPECT_EQ(host.names("PYL_PXDataCollection").size(), 1U);
}

TEST_F(ProfilesProviderTest, DescribesAllThatItServesAsTheClassesSay) {
    EXPECT_EQ(host.enumerate("interop:PYL_RegisteredProfile").size(), 49U);
    EXPECT_EQ(host.enumerate("interop:PYL_ReferencedProfile").size(), 32U);
    EXPECT_EQ(host.enumerate("interop:PYL_ExtendsProfile").size(), 19U);
    EXPECT_EQ(host.enumerate("PYL_ElementConformsToProfile").size(), 2U);
    EXPECT_EQ(host.enumerate("PYL_PXDataCollection").size(), 1U);
}

TEST_F(ProfilesProviderTest, AsksNobodyForTheProfilesThemselves) {
    host.names("interop:PYL_RegisteredProfile");
    host.names("interop:PYL_ReferencedProfile");
    host.associatorNames(profile("14"), {.associationClass = "PYL_ReferencedProfile"});
    EXPECT_EQ(elements->asked, Lines{});
}

TEST_F(ProfilesProviderTest, GetsOneByItsPathUnderAnyNameOfTheHost) {
    for (const char* name : {"localhost", "server-1"}) {
        const auto path = "//" + std::string(name) + "/" + profile("26").str();
        EXPECT_EQ(host.get(path)["InstanceID"], "KTQ:26");
    }
    EXPECT_EQ(host.get(profile("26"))["InstanceID"], "KTQ:26");
}

TEST_F(ProfilesProviderTest, SaysWhenThereIsNoSuchInstance) {
    for (const char* id : {"0", "50", ""}) {
        EXPECT_THAT(failureOf([&] { host.get(profile(id)); }),
                    AllOf(StartsWith("6 no such instance: /"), EndsWith("/" + profile(id).str())));
    }
}

// Asked by itself, for the path as it was given out: of the references in a request's keys the host
// takes away where they are.
TEST_F(ProfilesProviderTest, GetsALinkToAnElementByItsPath) {
    auto link =
        CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", "PYL_ElementConformsToProfile");
    link.addKey("ConformantStandard",
                PYL::makeLocalPath("PYL_RegisteredProfile", {{"InstanceID", "KTQ:26"}}, "interop"));
    link.addKey("ManagedElement", PYL::makeLocalPath("PYL_ComputerSystem", {{"Id", "s"}}));
    const auto context = host.context();
    CountedInstances found;
    provider.getInstance(context, link, nullptr, found);
    EXPECT_EQ(found.count, 1);
    elements->ids.clear();
    EXPECT_THROW(provider.getInstance(context, link, nullptr, found), CmpiCpp::CmpiStatus);
}

TEST_F(ProfilesProviderTest, LeadsFromTheSystemToTheComponentProfiles) {
    EXPECT_EQ(host.associatorNames(element("PYL_ComputerSystem", "s")), Paths{profile("26")});
    EXPECT_EQ(host.associatorNames(profile("26"), {.associationClass = "PYL_ExtendsProfile"}),
              Paths{profile("14")});
    Paths components;
    for (int id = 1; id <= 13; ++id) components.push_back(profile(std::to_string(id)));
    EXPECT_EQ(host.associatorNames(profile("14"), {.associationClass = "PYL_ReferencedProfile"}),
              components);
}

TEST_F(ProfilesProviderTest, LeadsFromAProfileToEverythingAroundIt) {
    // Some hosts ask each class of links by itself.
    EXPECT_THAT(host.associatorNames(profile("26")),
                UnorderedElementsAre(profile("25"), profile("14"), profile("40"), profile("41"),
                                     profile("47"), element("PYL_ComputerSystem", "s")));
    EXPECT_THAT(referenceClasses(profile("26")),
                UnorderedElementsAre("PYL_ReferencedProfile", "PYL_ExtendsProfile",
                                     "PYL_ReferencedProfile", "PYL_ReferencedProfile",
                                     "PYL_ReferencedProfile", "PYL_ElementConformsToProfile"));
}

TEST_F(ProfilesProviderTest, FiltersByTheClassOfTheLink) {
    EXPECT_EQ(referenceClasses(profile("26"), "PYL_ElementConformsToProfile"),
              Lines{"PYL_ElementConformsToProfile"});
    EXPECT_EQ(referenceClasses(profile("26"), "PYL_ExtendsProfile"), Lines{"PYL_ExtendsProfile"});
}

TEST_F(ProfilesProviderTest, KnowsNothingOfAnElementThatIsNotThere) {
    EXPECT_EQ(host.associatorNames(element("PYL_ComputerSystem", "other")), Paths{});
    EXPECT_EQ(host.associatorNames(element("PYL_Fan", "1")), Paths{});
}

TEST_F(ProfilesProviderTest, DeliversAnElementAsItsOwnProviderGivesIt) {
    const auto found =
        host.associators(profile("26"), {.associationClass = "PYL_ElementConformsToProfile"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["ElementName"], "from its provider");
}

TEST_F(ProfilesProviderTest, DeliversTheRestWhenAnElementsProviderFails) {
    elements->ids["PYL_ComputerSystem"] = []() -> Elements::Ids {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "broken");
    };
    EXPECT_EQ(host.associators(profile("26")).size(), 5U);
    EXPECT_EQ(host.log().countOf("warning test: no PYL_"), 1U);
}

TEST_F(ProfilesProviderTest, MayBeAskedAgainByTheProviderThatItAsks) {
    // A provider of an element that looks up its own profile meanwhile, and lists all.
    elements->onGet = [&] { EXPECT_EQ(host.names("interop:PYL_RegisteredProfile").size(), 49U); };
    EXPECT_EQ(host.associators(profile("26"), {.associationClass = "PYL_ElementConformsToProfile"})
                  .size(),
              1U);
}

TEST_F(ProfilesProviderTest, RefusesRoles) {
    EXPECT_EQ(
        failureOf([&] { host.associatorNames(profile("26"), {.role = "Dependent"}); }).substr(0, 2),
        "7 ");
    EXPECT_EQ(failureOf([&] {
                  host.referenceNames(element("PYL_ComputerSystem", "s"),
                                      {.role = "ManagedElement"});
              }).substr(0, 2),
              "7 ");
}

TEST_F(ProfilesProviderTest, RunsTheMethodsOfTheDataCollection) {
    const cimtest::Named in{{"RegisteredName", "KT Memory"}};
    EXPECT_EQ(host.invoke(collection(), "GetCollectedClasses", in).outputs.size(), 4U);
    EXPECT_EQ(failureOf([&] {
                  host.invoke(Path("PYL_PXDataCollection"), "GetCollectedClasses", in);
              }).substr(0, 2),
              "6 ");
}

}  // namespace
