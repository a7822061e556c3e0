#include "cimhost/server/ProjectFile.h"

#include "cimhost/server/Command.h"
#include "cimhost/server/ServeOptions.h"
#include "tests/cimhost/server/CommandLine.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::ElementsAre;

struct ProjectFileTest : testing::Test {
    TemporaryFolder folder;
    CommandLine<ServeOptions> line;

    ServeOptions& read(const std::string& text, std::vector<std::string> words = {}) {
        words.insert(words.begin(), {"--project", folder.write("cimhost.toml", text)});
        return line.parse(words);
    }

    /// What is wrong with the file, behind its name.
    std::string refusalOf(const std::string& text) {
        try {
            CommandLine<ServeOptions> fresh;
            fresh.parse({"--project", folder.write("cimhost.toml", text)});
        } catch (const UsageError& error) {
            const std::string words = error.what();
            const std::string name = folder / "cimhost.toml";
            EXPECT_EQ(words.substr(0, name.size()), name);
            return words.substr(name.size());
        }
        return "nothing";
    }

    std::vector<std::string> places() const {
        std::vector<std::string> all;
        for (const SchemaFile& schema : line.options.schema.files()) {
            all.push_back(schema.nameSpace + "=" + schema.file.string());
        }
        return all;
    }
};

TEST_F(ProjectFileTest, NamesSchemasByNamespaceSeenFromItsOwnFolder) {
    read(
        "[schema]\n"
        "interop = 'b.mof'\n"
        "\"root/x\" = [\n"
        "    \"more/b#1.mof\",  # a comment, and a comma at the end\n"
        "    \"/absolute/c.mof\",\n"
        "]\n");
    EXPECT_THAT(places(), ElementsAre("interop=" + (folder / "b.mof").string(),
                                      "root/x=" + (folder / "more/b#1.mof").string(),
                                      "root/x=/absolute/c.mof"));
}

TEST_F(ProjectFileTest, GivesOptionsOfEveryKind) {
    const ServeOptions& options = read(
        "registration = ['a.registration', 'b.registration']\n"
        "provider-dir = 'build'\n"
        "port = 5989\n"
        "isolate = true\n"
        "idle-time = 2.5\n"
        "log-level = 'debug'\n"
        "manner = 'sfcb'\n"
        "access-log = '-'\n");
    EXPECT_THAT(options.schema.registrations(),
                ElementsAre(folder / "a.registration", folder / "b.registration"));
    EXPECT_THAT(options.providerFolders, ElementsAre(folder / "build"));
    EXPECT_EQ(options.port, 5989);
    EXPECT_TRUE(options.isolates);
    EXPECT_EQ(options.limits.idleTime, std::chrono::milliseconds(2500));
    EXPECT_EQ(options.logLevel, BrokerLog::Level::debug);
    EXPECT_EQ(options.manner.name(), "sfcb");
    EXPECT_EQ(options.accessLog, "-");
    EXPECT_EQ(options.projectFile, folder / "cimhost.toml");
}

TEST_F(ProjectFileTest, GivesWayToTheCommandLine) {
    const ServeOptions& options =
        read("port = 5989\nlog-level = 'debug'\nisolate = false\n", {"--port", "1", "--isolate"});
    EXPECT_EQ(options.port, 1);
    EXPECT_TRUE(options.isolates);
    EXPECT_EQ(options.logLevel, BrokerLog::Level::debug);
}

TEST_F(ProjectFileTest, IsAddedToByListsOfTheCommandLine) {
    const ServeOptions& options =
        read("provider-dir = 'build'\nregistration = 'r'\n[schema]\n'root/x' = 'a.mof'\n",
             {"--provider-dir", "/first", "--registration", "s", "--namespace", "root/y",
              "--schema", "b.mof"});
    EXPECT_THAT(options.providerFolders, ElementsAre("/first", folder / "build"));
    EXPECT_THAT(options.schema.registrations(), ElementsAre("s", folder / "r"));
    EXPECT_THAT(places(), ElementsAre("root/x=" + (folder / "a.mof").string(), "root/y=b.mof"));
}

TEST_F(ProjectFileTest, IsRefusedWithItsLine) {
    EXPECT_THAT(refusalOf("port = 1\nprot = 2\n"), testing::StartsWith(":2: unknown key 'prot'"));
    EXPECT_THAT(refusalOf("help = true\n"), testing::StartsWith(":1: unknown key 'help'"));
    EXPECT_THAT(refusalOf("project = 'x'\n"), testing::StartsWith(":1: unknown key 'project'"));
    EXPECT_THAT(refusalOf("[serve]\nport = 1\n"), testing::StartsWith(":1: unknown key 'serve'"));
    EXPECT_THAT(refusalOf("\nport = 70000\n"), testing::StartsWith(":2: --port: "));
    EXPECT_THAT(refusalOf("port = [1, 2]\n"), testing::StartsWith(":1: --port: "));
    EXPECT_THAT(refusalOf("port = {}\n"), testing::StartsWith(":1: port is "));
    EXPECT_EQ(refusalOf("isolate = 1\n"), ":1: isolate is true or false");
    EXPECT_EQ(refusalOf("schema = 'a.mof'\n"), ":1: schema is a table of namespaces");
    EXPECT_THAT(refusalOf("port = 1\nport = 2\n"), testing::StartsWith(":2: "));
    EXPECT_THAT(refusalOf("registration = ['a'\n"), testing::StartsWith(":"));
    EXPECT_EQ(refusalOf("port = 1\n"), "nothing");
}

TEST_F(ProjectFileTest, IsHeldToWhatOptionsNeedOfOneAnother) {
    EXPECT_THROW(read("tls-cert = 'c.pem'\n"), CLI::RequiresError);
}

TEST_F(ProjectFileTest, MustBeThere) {
    EXPECT_THROW(line.parse({"--project", folder / "absent.toml"}), UsageError);
}

}  // namespace
}  // namespace cimhost
