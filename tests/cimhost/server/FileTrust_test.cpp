#include "cimhost/server/FileTrust.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace cimhost {
namespace {

constexpr uid_t somebody = 65534;
constexpr FileUse ownUses[] = {FileUse::passwords, FileUse::privateKey, FileUse::state};
constexpr FileUse codeUses[] = {FileUse::registration, FileUse::module, FileUse::moduleFolder};

struct FileTrustTest : testing::Test {
    TemporaryFolder folder;
    std::filesystem::path file = folder.write("file", "");

    /// What speaks against it; nothing when it is fine.
    static std::string reasonOf(const std::filesystem::path& path, FileUse use) {
        return distrustOf(path, use).value_or("");
    }
    /// "refused", for a reason that names the file, or "fine".
    std::string judgement(FileUse use, mode_t mode, uid_t owner = geteuid()) const {
        return judgementOf(file, use, mode, owner, getegid());
    }
    static std::string judgementOf(const std::filesystem::path& path, FileUse use, mode_t mode,
                                   uid_t owner, gid_t group) {
        const bool isGiven = geteuid() != 0 || chown(path.c_str(), owner, group) == 0;
        EXPECT_TRUE(isGiven);
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
        const std::string reason = reasonOf(path, use);
        if (reason.empty()) return "fine";
        EXPECT_NE(reason.find(path.string()), std::string::npos) << reason;
        return "refused";
    }
    static bool isRoot() { return geteuid() == 0; }
};

TEST_F(FileTrustTest, TakesWhatIsNotThere) {
    EXPECT_EQ(reasonOf(folder / "absent", FileUse::module), "");
    EXPECT_EQ(reasonOf(folder / "absent/file", FileUse::state), "");
    EXPECT_EQ(reasonOf("", FileUse::moduleFolder), "");
}

TEST_F(FileTrustTest, KeepsOthersFromPasswordsKeyAndState) {
    for (const FileUse use : ownUses) {
        EXPECT_EQ(judgement(use, 0600), "fine");
        EXPECT_EQ(judgement(use, 0640), "fine");
        EXPECT_EQ(judgement(use, 0620), "refused");
        EXPECT_EQ(judgement(use, 0602), "refused");
        EXPECT_EQ(judgement(use, 0644), use == FileUse::state ? "fine" : "refused");
    }
}

TEST_F(FileTrustTest, RefusesPasswordsKeyAndStateOfAnotherUser) {
    if (!isRoot()) {
        GTEST_SKIP() << "only root can give a file away";
    }
    for (const FileUse use : ownUses) EXPECT_EQ(judgement(use, 0600, somebody), "refused");
}

TEST_F(FileTrustTest, LetsOnlyRootsProcessAskWhatItRuns) {
    if (isRoot()) {
        GTEST_SKIP() << "is root's";
    }
    for (const FileUse use : codeUses) EXPECT_EQ(judgement(use, 0777), "fine");
}

TEST_F(FileTrustTest, RefusesCodeThatOthersCanWrite) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    for (const FileUse use : codeUses) {
        EXPECT_EQ(judgement(use, 0755), "fine");
        EXPECT_EQ(judgement(use, 0757), "refused");
        EXPECT_EQ(judgementOf(file, use, 0775, 0, 0), "fine");
        EXPECT_EQ(judgementOf(file, use, 0775, 0, 100), "refused");
    }
}

TEST_F(FileTrustTest, RefusesCodeOfAnotherUser) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    for (const FileUse use : codeUses) {
        EXPECT_EQ(judgement(use, 0755, somebody), "refused");
        EXPECT_EQ(judgementOf(file, use, 0775, somebody, somebody), "refused") << "a group of one";
        setenv("SUDO_UID", "65534", 1);
        EXPECT_EQ(judgement(use, 0755, somebody), "fine");
        setenv("SUDO_UID", "65534x", 1);
        EXPECT_EQ(judgement(use, 0755, somebody), "refused");
        unsetenv("SUDO_UID");
    }
}

TEST_F(FileTrustTest, JudgesEveryFolderOnTheWay) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    const auto path = folder.write("outer/inner/file", "");
    const auto inner = path.parent_path();
    for (const auto& judged : {inner, inner.parent_path(), folder.path()}) {
        const std::string refusal = "the folder " + judged.string() +
                                    " may be changed by others, and this process is root's; "
                                    "chmod go-w helps";
        for (const FileUse use : {FileUse::passwords, FileUse::state, FileUse::module}) {
            EXPECT_EQ(chmod(judged.c_str(), 0757), 0);
            EXPECT_EQ(reasonOf(path, use), refusal);
            EXPECT_EQ(reasonOf(inner / "absent", use), refusal) << "who will put it there?";
            EXPECT_EQ(chmod(judged.c_str(), 01777), 0);
            EXPECT_EQ(reasonOf(path, use), "") << "sticky, as /tmp";
            EXPECT_EQ(chmod(judged.c_str(), 0755), 0);
            EXPECT_EQ(reasonOf(path, use), "");
            EXPECT_EQ(chown(judged.c_str(), somebody, somebody), 0);
            EXPECT_EQ(reasonOf(path, use),
                      "the folder " + judged.string() +
                          " belongs to user 65534, who is neither root nor the user of this "
                          "process");
            EXPECT_EQ(chown(judged.c_str(), 0, 0), 0);
        }
    }
}

TEST_F(FileTrustTest, RefusesAFolderThatOthersCanAddModulesTo) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    EXPECT_EQ(chmod(folder.path().c_str(), 01777), 0);
    EXPECT_EQ(reasonOf(folder.path(), FileUse::moduleFolder),
              "the folder " + folder.path().string() +
                  " lets others put modules into it, sticky as it is, and this process is "
                  "root's; a folder that only root may write helps");
    EXPECT_EQ(reasonOf(folder.path() / ".", FileUse::moduleFolder).substr(0, 11), "the folder ");
    std::filesystem::create_directory(folder / "inner");
    EXPECT_EQ(reasonOf(folder / "inner", FileUse::moduleFolder), "");
}

TEST_F(FileTrustTest, FollowsLinks) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    std::filesystem::create_symlink("file", folder / "link");
    EXPECT_EQ(reasonOf(folder / "link", FileUse::module), "");
    EXPECT_EQ(judgement(FileUse::module, 0757), "refused");
    EXPECT_NE(reasonOf(folder / "link", FileUse::module), "");
    std::filesystem::create_symlink("round", folder / "round");
    EXPECT_EQ(reasonOf(folder / "round", FileUse::module), "") << "leads nowhere";
}

TEST_F(FileTrustTest, JudgesTheFoldersThatLinksStandIn) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    for (const char* const name : {"near", "far"}) std::filesystem::create_directory(folder / name);
    std::filesystem::create_symlink(folder / "far/./link", folder / "near/link");
    std::filesystem::create_symlink("../", folder / "far/link");
    const auto path = folder / "near/link/file";
    for (const FileUse use : {FileUse::passwords, FileUse::state, FileUse::module}) {
        EXPECT_EQ(reasonOf(path, use), "");
        for (const char* const name : {"near", "far"}) {
            EXPECT_EQ(chmod((folder / name).c_str(), 0757), 0);
            EXPECT_EQ(reasonOf(path, use).find("the folder " + (folder / name).string()), 0U);
            EXPECT_EQ(chmod((folder / name).c_str(), 01777), 0);
            EXPECT_EQ(reasonOf(path, use), "");
            const auto link = folder / name / "link";
            EXPECT_EQ(lchown(link.c_str(), somebody, somebody), 0);
            EXPECT_EQ(reasonOf(path, use).find("the link " + link.string() + " belongs to "), 0U);
            EXPECT_EQ(lchown(link.c_str(), 0, 0), 0);
            EXPECT_EQ(chmod((folder / name).c_str(), 0755), 0);
        }
    }
}

TEST_F(FileTrustTest, FindsRelativeFilesWhereTheProcessIs) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    const auto before = std::filesystem::current_path();
    std::filesystem::create_directory(folder / "inner");
    std::filesystem::current_path(folder / "inner");
    EXPECT_EQ(reasonOf("../file", FileUse::module), "");
    EXPECT_EQ(chmod(folder.path().c_str(), 0757), 0);
    EXPECT_NE(reasonOf("../file", FileUse::module), "");
    EXPECT_NE(reasonOf("absent", FileUse::module), "");
    std::filesystem::current_path(before);
}

}  // namespace
}  // namespace cimhost
