#include "cimhost/server/Installation.h"

#include "cimhost/server/Command.h"
#include "tests/cimhost/server/CommandLine.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::ElementsAre;

struct InstallationTest : testing::Test {
    TemporaryFolder folder;

    InstallationTest() {
        std::filesystem::create_directories(folder / "mof/base");
        std::filesystem::create_directories(folder / "acme");
    }

    std::vector<std::string> places() const {
        std::vector<std::string> all;
        for (const SchemaFile& schema : findInstalled(folder.path()).files) {
            all.push_back(schema.nameSpace + "=" +
                          schema.file.lexically_relative(folder.path()).string());
        }
        return all;
    }
};

TEST_F(InstallationTest, GivesEachNamespaceTheFilesOfItsRegisteredClasses) {
    folder.write("mof/base/base.mof", "class CIM_A {};");
    folder.write("mof/base/part.mof", "class CIM_A {};");
    folder.write("mof/one.mof", "class One : CIM_A {}; class Other : CIM_A {};");
    folder.write("mof/unused.mof", "class Unused : CIM_A {};");
    folder.write("mof/oneRegistration.mof", "instance of PG_Provider { Name = \"class Two\"; };");
    folder.write("mof/one.registration", "ONE root/x P M instance\nOther root/x P M instance\n");
    folder.write("acme/two.mof", "// class One\nclass Two : CIM_A {};");
    folder.write("acme/two.registration", "Two root/y Q N instance\nOne root/y P M instance\n");
    EXPECT_THAT(places(), ElementsAre("interop=mof/base/base.mof", "root/x=mof/base/base.mof",
                                      "root/x=mof/one.mof", "root/y=mof/base/base.mof",
                                      "root/y=mof/one.mof", "root/y=acme/two.mof"));
    EXPECT_THAT(findInstalled(folder.path()).registrations,
                ElementsAre(folder / "acme/two.registration", folder / "mof/one.registration"));
}

TEST_F(InstallationTest, ReadsAFileAfterThoseThatDeclareWhatItMentions) {
    folder.write("mof/a.mof", "class Link { Super ref S; B ref T; };");
    folder.write("mof/b.mof", "class B : Super {};");
    folder.write("mof/c.mof", "class Super { Link ref Back; };");
    folder.write("mof/a.registration", "Link root/x P M association\n");
    EXPECT_THAT(places(), ElementsAre("root/x=mof/c.mof", "root/x=mof/b.mof", "root/x=mof/a.mof"));
}

TEST_F(InstallationTest, IsEmptyWithoutRegistrationsOrFolder) {
    folder.write("mof/one.mof", "class One {};");
    EXPECT_THAT(findInstalled(folder.path()).files, testing::IsEmpty());
    EXPECT_THAT(findInstalled(folder / "absent").files, testing::IsEmpty());
    try {
        CommandLine<SchemaOptions>().parse({}).takeInstalledUnlessNamed(folder.path());
        ADD_FAILURE() << "taken";
    } catch (const UsageError& error) {
        EXPECT_THAT(error.what(), testing::StartsWith("nothing is installed: "));
        EXPECT_THAT(error.what(), testing::HasSubstr(folder.path().string()));
    }
}

}  // namespace
}  // namespace cimhost
