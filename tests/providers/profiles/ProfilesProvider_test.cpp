#include "providers/profiles/ProfilesProvider.h"

#include "cmpicpp/CmpiArgs.h"
#include "tests/common/QuietResults.h"
#include "tests/providers/profiles/ProfilesFixture.h"

#include <algorithm>
#include <thread>

namespace {

using CmpiCpp::CmpiName;

struct ProfilesProviderTest : ProfilesFixture {
    profiles::ProfilesProvider provider{host.broker(), log.logger};

    ProfilesProviderTest() {
        elements["PYL_ComputerSystem"] = [this] {
            return std::vector{element("PYL_ComputerSystem", "s")};
        };
        journal.take();
    }

    Lines names(const char* nameSpace, const char* className) {
        journal.take();
        provider.enumInstanceNames(host.context(), classPath(nameSpace, className), paths);
        return delivered();
    }
    Lines farEnds(const CmpiObjectPath& path, const char* associationClass = "",
                  const char* resultClass = "") {
        journal.take();
        provider.associatorNames(host.context(), path, associationClass, resultClass, {}, {},
                                 paths);
        return delivered();
    }
    Lines referenceClasses(const CmpiObjectPath& path, const char* resultClass = "") {
        journal.take();
        provider.referenceNames(host.context(), path, resultClass, {}, paths);
        Lines classes;
        for (const auto& line : delivered()) {
            classes.push_back(line.substr(line.find(':') + 1, line.find('.') - line.find(':') - 1));
        }
        return classes;
    }
};

TEST_F(ProfilesProviderTest, ServesEachClassInItsNamespaces) {
    EXPECT_EQ(names("interop", "PYL_RegisteredProfile").size(), 49U);
    EXPECT_EQ(names("interop", "PYL_ReferencedProfile").size(), 32U);
    EXPECT_EQ(names("interop", "PYL_ExtendsProfile").size(), 19U);
    EXPECT_EQ(names("interop", "PYL_ElementConformsToProfile").size(), 1U);
    EXPECT_EQ(names("interop", "PYL_PXDataCollection").size(), 0U);
    EXPECT_EQ(names("root/ktq", "PYL_RegisteredProfile").size(), 0U);
    EXPECT_EQ(names("root/ktq", "PYL_ElementConformsToProfile").size(), 1U);
    EXPECT_EQ(names("root/ktq", "PYL_PXDataCollection").size(), 1U);
}

TEST_F(ProfilesProviderTest, AsksNobodyForTheProfilesThemselves) {
    names("interop", "PYL_RegisteredProfile");
    names("interop", "PYL_ReferencedProfile");
    farEnds(profilePath("14"), "PYL_ReferencedProfile");
    EXPECT_EQ(asked, Lines{});
}

TEST_F(ProfilesProviderTest, GetsOneByItsPathUnderAnyNameOfTheHost) {
    for (const char* hostName : {"", "localhost", "server-1"}) {
        auto path = profilePath("26");
        path.setHost(CmpiName(hostName));
        provider.getInstance(host.context(), path, nullptr, instances);
        EXPECT_EQ(delivered().size(), 1U) << hostName;
    }
}

TEST_F(ProfilesProviderTest, SaysWhenThereIsNoSuchInstance) {
    for (const auto& path : {profilePath("0"), profilePath("50"), profilePath(""),
                             element("PYL_ElementConformsToProfile", "x")}) {
        EXPECT_EQ(
            outcomeOf([&] { provider.getInstance(host.context(), path, nullptr, instances); }),
            "status 6 no such instance: " + path.str());
    }
}

TEST_F(ProfilesProviderTest, GetsALinkToAnElementByItsPath) {
    auto link = classPath("root/ktq", "PYL_ElementConformsToProfile");
    auto profile = profilePath("26");
    profile.setHost(CmpiName("server-1"));
    link.addKey("ConformantStandard", profile);
    link.addKey("ManagedElement", host.path("PYL_ComputerSystem", "s"));
    provider.getInstance(host.context(), link, nullptr, instances);
    EXPECT_EQ(delivered().size(), 1U);
    elements.clear();
    EXPECT_TRUE(outcomeOf([&] {
                    provider.getInstance(host.context(), link, nullptr, instances);
                }).starts_with("status 6"));
}

TEST_F(ProfilesProviderTest, LeadsFromTheSystemToTheComponentProfiles) {
    EXPECT_EQ(farEnds(element("PYL_ComputerSystem", "s")), Lines{profileText("26")});
    EXPECT_EQ(farEnds(profilePath("26"), "PYL_ExtendsProfile"), Lines{profileText("14")});
    Lines components;
    for (int id = 1; id <= 13; ++id) components.push_back(profileText(std::to_string(id)));
    EXPECT_EQ(farEnds(profilePath("14"), "PYL_ReferencedProfile"), components);
}

TEST_F(ProfilesProviderTest, LeadsFromAProfileToEverythingAroundIt) {
    EXPECT_EQ(farEnds(profilePath("26")),
              (Lines{profileText("25"), profileText("14"), profileText("40"), profileText("41"),
                     profileText("47"), elementText("PYL_ComputerSystem", "s")}));
    EXPECT_EQ(
        referenceClasses(profilePath("26")),
        (Lines{"PYL_ReferencedProfile", "PYL_ExtendsProfile", "PYL_ReferencedProfile",
               "PYL_ReferencedProfile", "PYL_ReferencedProfile", "PYL_ElementConformsToProfile"}));
}

TEST_F(ProfilesProviderTest, FiltersByTheClassOfTheLink) {
    EXPECT_EQ(referenceClasses(profilePath("26"), "PYL_ElementConformsToProfile"),
              Lines{"PYL_ElementConformsToProfile"});
    EXPECT_EQ(referenceClasses(profilePath("26"), "PYL_ExtendsProfile"),
              Lines{"PYL_ExtendsProfile"});
}

TEST_F(ProfilesProviderTest, KnowsNothingOfAnElementThatIsNotThere) {
    EXPECT_EQ(farEnds(element("PYL_ComputerSystem", "other")), Lines{});
    EXPECT_EQ(farEnds(element("PYL_Fan", "1")), Lines{});
}

TEST_F(ProfilesProviderTest, DeliversAnElementAsItsOwnProviderGivesIt) {
    host.onGetInstance = [&](const CmpiObjectPath& path) {
        auto instance = CmpiCpp::makeCmpiInstance(host.broker(), path);
        instance.setProperty("ElementName", "from its provider");
        return instance;
    };
    provider.associators(host.context(), profilePath("26"), "PYL_ElementConformsToProfile", {}, {},
                         {}, nullptr, instances);
    const auto found = delivered();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NE(found[0].find("from its provider"), std::string::npos);
}

TEST_F(ProfilesProviderTest, DeliversTheRestWhenAnElementsProviderFails) {
    elements["PYL_ComputerSystem"] = []() -> std::vector<CmpiObjectPath> {
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "broken");
    };
    provider.associators(host.context(), profilePath("26"), {}, {}, {}, {}, nullptr, instances);
    const auto lines = journal.take();
    EXPECT_EQ(std::ranges::count_if(
                  lines, [](const auto& line) { return line.starts_with("delivered "); }),
              5);
    EXPECT_EQ(std::ranges::count_if(
                  lines, [](const auto& line) { return line.starts_with("warning: no PYL_"); }),
              1);
}

TEST_F(ProfilesProviderTest, MayBeAskedAgainByTheProviderThatItAsks) {
    host.onGetInstance = [&](const CmpiObjectPath& path) {
        // A provider of an element that looks up its own profile meanwhile, and lists all.
        Journal own;
        CapturedPaths inner(own);
        provider.enumInstanceNames(host.context(), classPath("interop", "PYL_RegisteredProfile"),
                                   inner);
        EXPECT_EQ(own.take().size(), 49U);
        return CmpiCpp::makeCmpiInstance(host.broker(), path);
    };
    provider.associators(host.context(), profilePath("26"), "PYL_ElementConformsToProfile", {}, {},
                         {}, nullptr, instances);
    EXPECT_EQ(delivered().size(), 1U);
}

TEST_F(ProfilesProviderTest, RefusesRoles) {
    EXPECT_TRUE(outcomeOf([&] {
                    provider.associatorNames(host.context(), profilePath("26"), {}, {}, "Dependent",
                                             {}, paths);
                }).starts_with("status 7"));
    EXPECT_TRUE(outcomeOf([&] {
                    provider.referenceNames(host.context(), element("PYL_ComputerSystem", "s"), {},
                                            "ManagedElement", paths);
                }).starts_with("status 7"));
}

TEST_F(ProfilesProviderTest, RunsTheMethodsOfTheDataCollection) {
    auto in = CmpiCpp::makeCmpiArgs(host.broker());
    in.addArg("RegisteredName", "KT Memory");
    auto path = classPath("root/ktq", "PYL_PXDataCollection");
    path.addKey("InstanceID", "KTQ:PYL_PXDataCollection:1");
    provider.invokeMethod(host.context(), path, "GetCollectedClasses", in, method);
    EXPECT_EQ(delivered().size(), 5U);
    const auto other = classPath("root/ktq", "PYL_PXDataCollection");
    EXPECT_EQ(outcomeOf([&] {
                  provider.invokeMethod(host.context(), other, "GetCollectedClasses", in, method);
              }),
              "status 6 no such instance: " + other.str());
    EXPECT_TRUE(outcomeOf([&] {
                    provider.invokeMethod(host.context(), profilePath("1"), "GetCollectedClasses",
                                          in, method);
                }).starts_with("status 17"));
}

}  // namespace
