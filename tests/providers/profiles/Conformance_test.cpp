#include "providers/profiles/Conformance.h"

#include "tests/providers/profiles/ProfilesFixture.h"

#include <utility>

namespace {

using CmpiCpp::CmpiStatus;

struct ConformanceTest : ProfilesFixture {
    profiles::Conformance conformance{host.broker(), host.logger(), catalogue(host.logger())};

    ConformanceTest() {
        elements->ids["PYL_Fan"] = [] { return Elements::Ids{"1", "2"}; };
    }

    /// A profile and an element that conforms to it.
    using Link = std::pair<Path, Path>;
    using Links = std::vector<Link>;

    /// Every link of the collection, all of which are in the namespace.
    Links links(PYL::CmpiManagedInstanceCollection& collection, const char* nameSpace) {
        Links found;
        for (unsigned int i = 0; i < collection.size(); ++i) {
            const auto link = host.show(*collection.getManagedInstance(i));
            EXPECT_EQ(link.path().nameSpace(), nameSpace);
            found.emplace_back(link["ConformantStandard"].path(), link["ManagedElement"].path());
        }
        return found;
    }
    Links all(const char* nameSpace) {
        PYL::CmpiManagedInstanceCollection collection(host.logger());
        conformance.addAll(host.context(), nameSpace, collection);
        return links(collection, nameSpace);
    }
    Links around(const Path& path) {
        auto asked = CmpiCpp::makeCmpiObjectPath(host.broker(), path.nameSpace(), path.className());
        const char* const key = path.has("Id") ? "Id" : "InstanceID";
        asked.addKey(key, path[key].text());
        PYL::CmpiManagedInstanceCollection collection(host.logger());
        conformance.addAround(host.context(), asked, collection);
        return links(collection, path.nameSpace().c_str());
    }
    Lines takeAsked() { return std::exchange(elements->asked, {}); }

    const Links everything{{profile("26"), element("PYL_ComputerSystem", "s")},
                           {profile("27"), element("PYL_Fan", "1")},
                           {profile("27"), element("PYL_Fan", "2")}};
};

TEST_F(ConformanceTest, LinksTheElementsThatAreThereInBothNamespaces) {
    host.faults();  // which count
    EXPECT_EQ(all("interop"), everything);
    EXPECT_EQ(host.faults().calls("CMPIBrokerFT.enumerateInstanceNames"), 48U);
    EXPECT_EQ(all("root/ktq"), everything);
    EXPECT_EQ(all("INTEROP"), everything);
}

TEST_F(ConformanceTest, LinksNothingInANamespaceWithoutElements) {
    EXPECT_EQ(all("root/other"), Links{});
    EXPECT_EQ(takeAsked(), Lines{});
}

TEST_F(ConformanceTest, GoesOnWithoutAClassWhoseProviderFails) {
    elements->ids["PYL_ComputerSystem"] = []() -> Elements::Ids {
        throw CmpiStatus(CMPI_RC_ERR_FAILED, "its bus hangs %s");
    };
    EXPECT_EQ(all("interop"), (Links{everything[1], everything[2]}));
    EXPECT_EQ(host.log().countOf("warning test: no PYL_ComputerSystem in root/ktq to conform to "
                                 "\"KT Base Server\": 1 its bus hangs %s"),
              1U);
    EXPECT_EQ(host.log().countOf("warning test"), 1U);
}

TEST_F(ConformanceTest, NotesAClassThatNobodyServesWithoutAWarning) {
    elements->ids.clear();
    for (const CMPIrc code :
         {CMPI_RC_ERR_INVALID_CLASS, CMPI_RC_ERR_NOT_SUPPORTED, CMPI_RC_ERR_INVALID_NAMESPACE}) {
        elements->ids["PYL_Fan"] = [code]() -> Elements::Ids { throw CmpiStatus(code, "nobody"); };
        EXPECT_EQ(all("interop"), Links{});
        EXPECT_EQ(host.log().countOf("information test: no PYL_Fan in root/ktq to conform to \"KT "
                                     "Fan\": " +
                                     std::to_string(code) + " nobody"),
                  1U);
        EXPECT_EQ(host.log().countOf("warning test"), 0U);
    }
}

TEST_F(ConformanceTest, PassesOnWhatIsNoFailureOfAProvider) {
    elements->ids["PYL_Fan"] = []() -> Elements::Ids { return {"1"}; };
    const cimtest::HostNameIs unreadable(std::nullopt);
    EXPECT_EQ(all("interop").size(), 2U);
}

TEST_F(ConformanceTest, AsksOnlyForWhatMayBeAtTheOtherEnd) {
    EXPECT_EQ(around(profile("27")), (Links{everything[1], everything[2]}));
    EXPECT_EQ(takeAsked(), Lines{"PYL_Fan"});
    EXPECT_EQ(around(element("PYL_Fan", "2")), (Links{everything[1], everything[2]}));
    EXPECT_EQ(takeAsked(), Lines{"PYL_Fan"});
    for (const Path& path :
         {profile("14"), profile("50"), profile(""), Path("root/other:PYL_Fan.Id=\"2\"")}) {
        EXPECT_EQ(around(path), Links{}) << path;
    }
    EXPECT_EQ(takeAsked(), Lines{});
}

TEST_F(ConformanceTest, CountsASubclassAsAnImplementation) {
    EXPECT_EQ(around(element("PYL_BladeServer", "x")), Links{everything[0]});
    EXPECT_EQ(takeAsked(), Lines{"PYL_ComputerSystem"});
}

}  // namespace
