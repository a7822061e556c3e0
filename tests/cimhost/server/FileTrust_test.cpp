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

    /// "refused" or "warning" with the reason, or "fine".
    std::string judgement(FileUse use, mode_t mode, uid_t owner = geteuid()) const {
        return judgementOf(file, use, mode, owner, getegid());
    }
    static std::string judgementOf(const std::filesystem::path& path, FileUse use, mode_t mode,
                                   uid_t owner, gid_t group) {
        const bool isGiven = geteuid() != 0 || chown(path.c_str(), owner, group) == 0;
        EXPECT_TRUE(isGiven);
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
        const auto distrust = distrustOf(path, use);
        if (!distrust) return "fine";
        EXPECT_NE(distrust->reason.find(path.string()), std::string::npos) << distrust->reason;
        return distrust->isRefusal ? "refused" : "warning";
    }
    static bool isRoot() { return geteuid() == 0; }
};

TEST_F(FileTrustTest, TakesWhatIsNotThere) {
    EXPECT_FALSE(distrustOf(folder / "absent", FileUse::module));
    EXPECT_FALSE(distrustOf(folder / "absent", FileUse::state));
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

TEST_F(FileTrustTest, WarnsOfCodeOfAnotherUser) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    for (const FileUse use : codeUses) {
        EXPECT_EQ(judgement(use, 0755, somebody), "warning");
        EXPECT_EQ(judgementOf(file, use, 0775, somebody, somebody), "warning") << "a group of one";
        setenv("SUDO_UID", "65534", 1);
        EXPECT_EQ(judgement(use, 0755, somebody), "fine");
        setenv("SUDO_UID", "65534x", 1);
        EXPECT_EQ(judgement(use, 0755, somebody), "warning");
        unsetenv("SUDO_UID");
    }
}

TEST_F(FileTrustTest, JudgesTheFolderToo) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    const auto inner = folder.write("inner/file", "").parent_path();
    const auto judged = [&](mode_t mode, FileUse use) {
        EXPECT_EQ(chmod(inner.c_str(), mode), 0);
        const auto distrust = distrustOf(inner / "file", use);
        return distrust ? distrust->reason : "";
    };
    const std::string refusal = "the folder " + inner.string() +
                                " may be changed by others, and this process is root's; "
                                "chmod go-w helps";
    for (const FileUse use : {FileUse::passwords, FileUse::state, FileUse::module}) {
        EXPECT_EQ(judged(0757, use), refusal);
        EXPECT_EQ(judged(01777, use), "") << "sticky, as /tmp";
        EXPECT_EQ(judged(0755, use), "");
    }
}

TEST_F(FileTrustTest, FollowsLinks) {
    if (!isRoot()) {
        GTEST_SKIP() << "asked by root alone";
    }
    std::filesystem::create_symlink(file, folder / "link");
    EXPECT_EQ(judgement(FileUse::module, 0757), "refused");
    const auto distrust = distrustOf(folder / "link", FileUse::module);
    ASSERT_TRUE(distrust);
    EXPECT_TRUE(distrust->isRefusal);
}

}  // namespace
}  // namespace cimhost
