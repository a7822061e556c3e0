#include "cimhost/http/PasswordFile.h"
#include "cimhost/http/PasswordHash.h"
#include "tests/cimhost/http/TestServer.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <vector>

/// The program as a user meets it.
namespace cimhost {
namespace {

using testing::HasSubstr;

struct ProgramTest : testing::Test {
    TemporaryFolder folder;
    std::string schema = folder.write("a.mof", "class A { string s; };");

    pid_t start(std::vector<std::string> words, const std::string& input = {}) {
        words.insert(words.begin(), CIMHOST_PROGRAM);
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        folder.write("in", input);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, 0, (folder / "in").c_str(), O_RDONLY, 0);
        constexpr int fresh = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&files, 1, (folder / "out").c_str(), fresh, 0600);
        posix_spawn_file_actions_addopen(&files, 2, (folder / "err").c_str(), fresh, 0600);
        pid_t process = -1;
        EXPECT_EQ(
            posix_spawn(&process, CIMHOST_PROGRAM, &files, nullptr, arguments.data(), environ), 0);
        posix_spawn_file_actions_destroy(&files);
        return process;
    }

    static int finish(pid_t process) {
        int status = 0;
        EXPECT_EQ(waitpid(process, &status, 0), process);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    int run(const std::vector<std::string>& words, const std::string& input = {}) {
        return finish(start(words, input));
    }
    std::string out() const { return folder.read("out"); }
    std::string err() const { return folder.read("err"); }
};

TEST_F(ProgramTest, HelpsWhoAsks) {
    EXPECT_EQ(run({"--help"}), 0);
    for (const char* command : {"serve", "check", "passwd"}) EXPECT_THAT(out(), HasSubstr(command));
    EXPECT_EQ(run({"serve", "--help"}), 0);
    EXPECT_THAT(out(), HasSubstr("Example:"));
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_THAT(out(), testing::StartsWith("cimhost "));
}

TEST_F(ProgramTest, Ends2WhenAskedWrongly) {
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({"dance"}), 2);
    EXPECT_EQ(run({"serve", "--port", "many"}), 2);
    EXPECT_THAT(err(), testing::StartsWith("cimhost: "));
    EXPECT_THAT(err(), HasSubstr("--port"));
    EXPECT_EQ(run({"serve", "--port", "65536"}), 2);
    EXPECT_THAT(err(), HasSubstr("65535"));
    EXPECT_EQ(run({"serve", "--port", "0"}), 2) << "nothing to serve";
    EXPECT_THAT(err(), HasSubstr("--schema"));
    EXPECT_EQ(run({"serve", "--listen", "0.0.0.0", "--port", "0", "--schema", schema}), 2);
    EXPECT_THAT(err(), HasSubstr("0.0.0.0"));
    EXPECT_EQ(run({"passwd", folder / "p"}), 2);
    EXPECT_EQ(run({"passwd", folder / "p", "a:b"}, "secret\n"), 2);
}

TEST_F(ProgramTest, TellsWhichCommandOrOptionWasMeant) {
    EXPECT_EQ(run({"srve"}), 2);
    EXPECT_THAT(
        err(), testing::StartsWith("cimhost: there is no command 'srve'; did you mean 'serve'?\n"));
    EXPECT_EQ(run({"serve", "--prot=5"}), 2);
    EXPECT_THAT(err(), testing::StartsWith(
                           "cimhost: '--prot=5' was not expected; did you mean '--port'?\n"));
    EXPECT_EQ(run({"serve", "dance"}), 2);
    EXPECT_THAT(err(), testing::StartsWith("cimhost: 'dance' was not expected\n"));
    EXPECT_EQ(run({"modul-host"}), 2);
    EXPECT_THAT(err(), testing::Not(HasSubstr("did you mean"))) << "nobody is to use that one";
}

TEST_F(ProgramTest, SaysWhyItCannotStart) {
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", folder / "absent.mof"}), 1);
    EXPECT_THAT(err(), HasSubstr("absent.mof"));
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", folder.write("b.mof", "class {")}), 1);
    EXPECT_THAT(err(), HasSubstr("b.mof:1:"));
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", schema, "--registration",
                   folder.write("r", "A\n")}),
              1);
    EXPECT_THAT(err(), HasSubstr("r:1:"));
    EXPECT_EQ(
        run({"serve", "--port", "0", "--schema", schema, "--password-file", folder / "absent"}), 1);
    EXPECT_THAT(err(), HasSubstr("absent"));
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", schema, "--tls-cert", "/absent", "--tls-key",
                   "/absent"}),
              1);
    EXPECT_THAT(err(), HasSubstr("/absent"));
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", schema, "--access-log", "/nowhere/log"}), 1);
    EXPECT_THAT(err(), HasSubstr("/nowhere/log"));
    EXPECT_EQ(out(), "") << "it never was ready";
}

TEST_F(ProgramTest, ServesUntilItsTimeIsOver) {
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", schema, "--max-seconds", "0"}), 0) << err();
    EXPECT_THAT(out(), testing::MatchesRegex("cimhost is ready at http://127.0.0.1:[0-9]+/cimom\n"
                                             "Its console: http://127.0.0.1:[0-9]+/\n"));
    run({"serve", "--port", "0", "--schema", schema, "--max-seconds", "0", "--no-console"});
    EXPECT_THAT(out(),
                testing::MatchesRegex("cimhost is ready at http://127.0.0.1:[0-9]+/cimom\n"));
}

TEST_F(ProgramTest, WarnsOfARegistrationThatServesNothing) {
    const std::string registration = folder.write("r", "Unheard root/cimv2 P M instance\n");
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", schema, "--registration", registration,
                   "--max-seconds", "0"}),
              0);
    EXPECT_THAT(err(), HasSubstr("r:1: provider P is registered for "
                                 "root/cimv2:Unheard, which does not exist"));
    EXPECT_THAT(err(), HasSubstr("warning cimhost: "));
    EXPECT_THAT(err(), HasSubstr("r:1: module M: libM.so was not found in "));
    run({"serve", "--port", "0", "--schema", schema, "--registration", registration,
         "--max-seconds", "0", "--no-check"});
    EXPECT_EQ(err(), "");
}

TEST_F(ProgramTest, WarnsOfARegistrationThatIsRepeatedAndTakesIt) {
    const std::string line = "PYL_Thing root/cimv2 P M instance\n";
    const std::string first = folder.write("first", line);
    const std::string second = folder.write("second", line);
    const std::string warning = "second:1: class PYL_Thing in namespace root/cimv2 is registered";
    EXPECT_EQ(run({"serve", "--port", "0", "--schema", schema, "--registration", first,
                   "--registration", second, "--max-seconds", "0"}),
              0);
    EXPECT_THAT(err(), HasSubstr(warning));
    run({"check", "--schema", schema, "--registration", first, "--registration", second});
    EXPECT_THAT(err(), HasSubstr("cimhost: warning: "));
    EXPECT_THAT(err(), HasSubstr(warning));
}

TEST_F(ProgramTest, EndsInOrderOnEachSignalThatAsksForIt) {
    for (const int signal : {SIGTERM, SIGINT}) {
        const pid_t process =
            start({"serve", "--port", "0", "--schema", schema, "--max-seconds", "60"});
        EXPECT_TRUE(await([this] { return out().find('\n') != std::string::npos; })) << err();
        kill(process, signal);
        EXPECT_EQ(finish(process), 0) << err();
    }
}

TEST_F(ProgramTest, LooksAtItsFilesOnAHangUpAndServesOn) {
    const pid_t process =
        start({"serve", "--port", "0", "--schema", schema, "--max-seconds", "60"});
    EXPECT_TRUE(await([this] { return out().find('\n') != std::string::npos; })) << err();
    kill(process, SIGHUP);
    EXPECT_TRUE(await([this] { return err().find("reload: ") != std::string::npos; })) << err();
    kill(process, SIGTERM);
    EXPECT_EQ(finish(process), 0) << err();
}

TEST_F(ProgramTest, ChecksFilesAndServesNothing) {
    EXPECT_EQ(run({"check", "--namespace", "root/x", "--schema", schema}), 0) << err();
    EXPECT_EQ(out(), "1 class, 0 registrations\n");
    EXPECT_EQ(run({"check", "--schema", folder.write("b.mof", "class {")}), 1);
    EXPECT_THAT(err(), HasSubstr("b.mof:1:"));
    const std::string registration =
        folder.write("r", "A root/x P M instance\nB root/x P M instance\n");
    EXPECT_EQ(
        run({"check", "--namespace", "root/x", "--schema", schema, "--registration", registration}),
        1);
    EXPECT_THAT(err(), HasSubstr("root/x:B"));
}

TEST_F(ProgramTest, MakesAndChangesAPasswordFile) {
    const auto file = folder / "passwords";
    EXPECT_EQ(run({"passwd", file, "fred"}, "secret\n"), 0) << err();
    EXPECT_EQ(run({"passwd", file, "anna"}, "other"), 0) << err();
    EXPECT_EQ(run({"passwd", file, "fred"}, "changed\nand no more\n"), 0) << err();
    const PasswordFile passwords(file);
    ASSERT_EQ(passwords.entries().size(), 2U);
    EXPECT_TRUE(matchesHash("changed", passwords.entries().at("fred")));
    EXPECT_TRUE(matchesHash("other", passwords.entries().at("anna")));
}

TEST_F(ProgramTest, LeavesAPasswordFileAloneWhenItCannotDoBetter) {
    const auto broken = folder.write("passwords", "not a password file\n");
    EXPECT_EQ(run({"passwd", broken, "fred"}, "secret\n"), 1);
    EXPECT_EQ(folder.read("passwords"), "not a password file\n");
    EXPECT_EQ(run({"passwd", folder / "new", "fred"}, ""), 1) << "no password";
    EXPECT_FALSE(std::filesystem::exists(folder / "new"));
}

TEST_F(ProgramTest, TakesNoPasswordsOfSomebodyElse) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a file away";
    }
    const auto file = folder.write("passwords", "");
    EXPECT_EQ(chown(file.c_str(), 65534, 65534), 0);
    EXPECT_EQ(run({"passwd", file, "fred"}, "secret\n"), 1);
    EXPECT_THAT(err(), HasSubstr("the password file " + file.string() + " belongs to user 65534"));
    EXPECT_EQ(folder.read("passwords"), "");
}

}  // namespace
}  // namespace cimhost
