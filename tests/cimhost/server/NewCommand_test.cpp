#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

/// `cimhost new` up to the files that it leaves; tests/examples builds and runs them.
namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;

struct NewCommandTest : testing::Test {
    TemporaryFolder folder;

    /// In the folder, by the shell.
    int make(const std::string& words) const {
        const std::string command = "cd '" + (folder / "").string() +
                                    "' && " CIMHOST_PROGRAM " new " + words + " >out 2>err";
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_F(NewCommandTest, NamesEverythingAfterTheMakerAndTheThing) {
    ASSERT_EQ(make("AcmeEthernet"), 0) << folder.read("err");
    EXPECT_THAT(folder.read("AcmeEthernet/AcmeEthernet.mof"), HasSubstr("class ACME_Ethernet :"));
    EXPECT_THAT(folder.read("AcmeEthernet/AcmeEthernetProvider.cpp"),
                HasSubstr("PYL_CMPI_PROVIDER(AcmeEthernetProvider, makeProvider)"));
    EXPECT_THAT(folder.read("AcmeEthernet/.gitignore"), HasSubstr("/build/"));
    for (const auto& entry : std::filesystem::directory_iterator(folder / "AcmeEthernet")) {
        const std::string name = entry.path().filename().string();
        EXPECT_THAT(name, Not(HasSubstr("Thing")));
        EXPECT_THAT(folder.read("AcmeEthernet/" + name), Not(HasSubstr("Thing"))) << name;
    }
}

TEST_F(NewCommandTest, FindsTheTwoWords) {
    for (const auto& [name, className] : {std::pair("IBCDisk", "IBC_Disk"),
                                          {"AcmeDISK", "ACME_DISK"},
                                          {"Acme2Port", "ACME2_Port"},
                                          {"ThingAcmePort", "THING_AcmePort"}}) {
        ASSERT_EQ(make(name), 0) << folder.read("err");
        EXPECT_THAT(folder.read(std::string(name) + "/" + name + ".mof"),
                    HasSubstr("class " + std::string(className) + " :"));
    }
}

TEST_F(NewCommandTest, TellsWhatToTypeNext) {
    ASSERT_EQ(make("AcmeDisk --folder deep/down"), 0) << folder.read("err");
    EXPECT_EQ(folder.read("out"),
              "deep/down has a provider of ACME_Disk. Next:\n"
              "    cd deep/down\n"
              "    cmake -B build\n"
              "    cmake --build build\n"
              "    ctest --test-dir build\n"
              "    cimhost serve --project cimhost.toml\n"
              "    wbemcli ei http://localhost:5988/root/ktq:ACME_Disk\n");
    EXPECT_TRUE(std::filesystem::exists(folder / "deep/down/AcmeDisk.mof"));
}

TEST_F(NewCommandTest, RefusesNamesWithTheReason) {
    const std::pair<const char*, const char*> rows[] = {
        {"acmeEthernet",
         "two words with capitals, the maker's and the thing's, as in AcmeEthernet"},
        {"Acme", "two words"},
        {"ACME", "two words"},
        {"''", "two words"},
        {"Acme-Ethernet", "'-' is neither a letter nor a digit"},
        {"../AcmeEthernet", "'.' is neither a letter nor a digit"},
        {"CimDisk", "classes that begin with CIM_ are others'"},
        {"PylFan", "classes that begin with PYL_ are others'"},
    };
    for (const auto& [name, reason] : rows) {
        EXPECT_EQ(make(name), 2) << name;
        EXPECT_THAT(folder.read("err"), HasSubstr(reason)) << name;
    }
}

TEST_F(NewCommandTest, LeavesAloneWhatIsThere) {
    std::filesystem::create_directory(folder / "AcmeDisk");
    EXPECT_EQ(make("AcmeDisk"), 2);
    EXPECT_EQ(folder.read("err"),
              "cimhost: AcmeDisk is there already; --folder names another place\n");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "AcmeDisk"));
}

}  // namespace
}  // namespace cimhost
