#include "providers/profiles/Conformance.h"

#include "tests/providers/profiles/ProfilesFixture.h"

#include <algorithm>

namespace {

using CmpiCpp::CmpiStatus;

struct ConformanceTest : ProfilesFixture {
    profiles::Conformance conformance{host.broker(), log.logger, catalogue(log.logger)};

    ConformanceTest() {
        elements["PYL_ComputerSystem"] = [this] {
            return std::vector{element("PYL_ComputerSystem", "s")};
        };
        elements["PYL_Fan"] = [this] {
            return std::vector{element("PYL_Fan", "1"), element("PYL_Fan", "2")};
        };
        journal.take();
    }

    /// "profile -> element" of every link of the collection in the namespace.
    Lines links(PYL::CmpiManagedInstanceCollection& collection, const char* nameSpace) {
        Lines found;
        for (unsigned int i = 0; i < collection.size(); ++i) {
            const auto path = collection.getManagedInstance(i)->getPath();
            EXPECT_EQ(path.getNameSpace().str(), nameSpace);
            found.push_back(path.getKey("ConformantStandard").asObjectPath().str() + " -> " +
                            path.getKey("ManagedElement").asObjectPath().str());
        }
        return found;
    }
    Lines all(const char* nameSpace) {
        PYL::CmpiManagedInstanceCollection collection(log.logger);
        conformance.addAll(host.context(), nameSpace, collection);
        return links(collection, nameSpace);
    }
    Lines around(const CmpiObjectPath& path) {
        PYL::CmpiManagedInstanceCollection collection(log.logger);
        conformance.addAround(host.context(), path, collection);
        return links(collection, path.getNameSpace().c_str());
    }
    static std::string link(const std::string& profile, const std::string& elementPath) {
        return profileText(profile) + " -> " + elementPath;
    }

    const Lines everything{link("26", elementText("PYL_ComputerSystem", "s")),
                           link("27", elementText("PYL_Fan", "1")),
                           link("27", elementText("PYL_Fan", "2"))};
};

TEST_F(ConformanceTest, LinksTheElementsThatAreThereInBothNamespaces) {
    EXPECT_EQ(all("interop"), everything);
    EXPECT_EQ(asked.size(), 48U);
    EXPECT_EQ(all("root/ktq"), everything);
    EXPECT_EQ(all("INTEROP"), everything);
}

TEST_F(ConformanceTest, LinksNothingInANamespaceWithoutElements) {
    EXPECT_EQ(all("root/other"), Lines{});
    EXPECT_EQ(asked, Lines{});
}

TEST_F(ConformanceTest, GoesOnWithoutAClassWhoseProviderFails) {
    elements["PYL_ComputerSystem"] = []() -> std::vector<CmpiObjectPath> {
        throw CmpiStatus(CMPI_RC_ERR_FAILED, "its bus hangs %s");
    };
    EXPECT_EQ(all("interop"), (Lines{everything[1], everything[2]}));
    EXPECT_EQ(warnings(), Lines{"no PYL_ComputerSystem in root/ktq to conform to \"KT Base "
                                "Server\": 1 its bus hangs %s"});
}

TEST_F(ConformanceTest, NotesAClassThatNobodyServesWithoutAWarning) {
    elements.clear();
    for (const CMPIrc code :
         {CMPI_RC_ERR_INVALID_CLASS, CMPI_RC_ERR_NOT_SUPPORTED, CMPI_RC_ERR_INVALID_NAMESPACE}) {
        elements["PYL_Fan"] = [code]() -> std::vector<CmpiObjectPath> {
            throw CmpiStatus(code, "nobody");
        };
        EXPECT_EQ(all("interop"), Lines{});
        const auto lines = journal.take();
        EXPECT_EQ(std::ranges::count(lines,
                                     "information: no PYL_Fan in root/ktq to conform to "
                                     "\"KT Fan\": " +
                                         std::to_string(code) + " nobody"),
                  1);
        EXPECT_TRUE(std::ranges::none_of(
            lines, [](const auto& line) { return line.starts_with("warning"); }));
    }
}

TEST_F(ConformanceTest, PassesOnWhatIsNoFailureOfAProvider) {
    elements["PYL_Fan"] = [this]() -> std::vector<CmpiObjectPath> {
        return {element("PYL_Fan", "1")};
    };
    cimtest::setTestHostName(std::nullopt);
    EXPECT_EQ(all("interop").size(), 2U);
    cimtest::setTestHostName(cimtest::testHostName);
}

TEST_F(ConformanceTest, AsksOnlyForWhatMayBeAtTheOtherEnd) {
    EXPECT_EQ(around(profilePath("27")), (Lines{everything[1], everything[2]}));
    EXPECT_EQ(asked, Lines{"PYL_Fan"});
    asked.clear();
    EXPECT_EQ(around(element("PYL_Fan", "2")), (Lines{everything[1], everything[2]}));
    EXPECT_EQ(asked, Lines{"PYL_Fan"});
    asked.clear();
    EXPECT_EQ(around(profilePath("14")), Lines{});
    EXPECT_EQ(around(profilePath("50")), Lines{});
    EXPECT_EQ(around(profilePath("")), Lines{});
    EXPECT_EQ(around(host.path("root/other", "PYL_Fan", "2", "")), Lines{});
    EXPECT_EQ(asked, Lines{});
}

TEST_F(ConformanceTest, CountsASubclassAsAnImplementation) {
    EXPECT_EQ(around(element("PYL_BladeServer", "x")), Lines{everything[0]});
    EXPECT_EQ(asked, Lines{"PYL_ComputerSystem"});
}

}  // namespace
