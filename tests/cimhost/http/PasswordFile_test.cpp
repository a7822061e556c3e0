#include "cimhost/http/PasswordFile.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace cimhost {
namespace {

using testing::HasSubstr;

const std::string hash =
    "$6$rounds=1000$abcdefgh$"
    "zfuYKYTkH1umm8XyJRx1sHcLIPf4iB8DO7Qp2EzQbO4dYlfbb/vyqHPWpUdI22wfMDbZt/XNOqFJHCRZMHxvV/";

struct PasswordFileTest : testing::Test {
    TemporaryFolder folder;

    std::string refusalOf(const std::string& text) {
        return cimhost::refusalOf<std::runtime_error>(
            [&] { PasswordFile file(folder.write("passwords", text)); });
    }
};

TEST_F(PasswordFileTest, ReadsUsersAndSkipsComments) {
    const PasswordFile file(folder.write("p", "# users\n\nfred:" + hash + "\r\nanna b:" + hash));
    EXPECT_EQ(file.entries().size(), 2U);
    EXPECT_EQ(file.entries().at("fred"), hash);
    EXPECT_EQ(file.entries().at("anna b"), hash);
}

TEST_F(PasswordFileTest, NamesTheLineThatIsWrong) {
    EXPECT_THAT(refusalOf("fred:" + hash + "\nfred:" + hash),
                HasSubstr("passwords:2: user fred is there twice"));
    EXPECT_THAT(refusalOf("nobody"), HasSubstr("passwords:1: no colon"));
    EXPECT_THAT(refusalOf(":" + hash), HasSubstr("passwords:1: a user name has"));
    EXPECT_THAT(refusalOf("#c\nfred:secret"),
                HasSubstr("passwords:2: the password hash of user fred"));
    EXPECT_THAT(refusalOf("fred:"), HasSubstr("password hash"));
    EXPECT_THAT(refusalOf(std::string("fr\0ed:", 6) + hash), HasSubstr("user name"));
}

TEST_F(PasswordFileTest, DoesNotPrintTheSecretOfALineThatIsWrong) {
    EXPECT_THAT(refusalOf("fred:secret"), testing::Not(HasSubstr("secret")));
}

TEST_F(PasswordFileTest, RefusesAFileThatOthersMayReadOrChange) {
    const auto file = folder.write("p", "fred:" + hash);
    for (const unsigned mode : {0604U, 0602U, 0620U, 0644U}) {
        std::filesystem::permissions(file, std::filesystem::perms(mode));
        EXPECT_THROW(PasswordFile{file}, std::runtime_error) << std::oct << mode;
    }
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    EXPECT_NO_THROW(PasswordFile{file}) << "a group may read";
}

TEST_F(PasswordFileTest, RefusesWhatIsNoFile) {
    EXPECT_THROW(PasswordFile{folder.path()}, std::runtime_error);
    EXPECT_THROW(PasswordFile{folder / "absent"}, std::system_error);
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_THROW(PasswordFile{folder / "pipe"}, std::runtime_error)
        << "and does not wait for a writer";
    EXPECT_THAT(refusalOf(std::string(1024 * 1024 + 1, '#')), HasSubstr("larger than 1 MiB"));
    const std::string user = "\nfred:" + hash;
    const std::string comment(1024 * 1024 - user.size(), '#');
    EXPECT_EQ(PasswordFile(folder.write("p", comment + user)).entries().size(), 1U)
        << "exactly 1 MiB";
}

TEST_F(PasswordFileTest, SavesWhatItReadsBack) {
    PasswordFile file;
    file.set("fred", hash);
    file.set("anna", hash);
    file.save(folder / "p");
    EXPECT_EQ(PasswordFile(folder / "p").entries(), file.entries());
    struct stat status {};
    ASSERT_EQ(stat((folder / "p").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(PasswordFileTest, LeavesNothingBesideTheFile) {
    PasswordFile file;
    file.save(folder / "p");
    std::filesystem::create_directory(folder / "taken");
    folder.write("taken/file", "");
    EXPECT_THROW(file.save(folder / "taken"), std::system_error);
    EXPECT_THROW(file.save(folder / "absent/p"), std::system_error);
    const std::filesystem::directory_iterator entries(folder.path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);
}

TEST_F(PasswordFileTest, RefusesNamesThatCannotBeCarried) {
    PasswordFile file;
    for (const std::string name : {"", "a:b", "a\nb", "#a", "a\x7F"}) {
        EXPECT_THROW(file.set(name, hash), std::runtime_error) << name;
    }
    EXPECT_THROW(file.set(std::string(256, 'a'), hash), std::runtime_error);
    EXPECT_NO_THROW(file.set(std::string(255, 'a'), hash));
    EXPECT_NO_THROW(file.set("J\xC3\xBCrgen", hash));
}

}  // namespace
}  // namespace cimhost
