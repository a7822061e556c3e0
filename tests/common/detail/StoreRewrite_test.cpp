#include "common/detail/StoreRewrite.h"

#include "tests/common/FileCalls.h"
#include "tests/common/StoreFixture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;
using PYL::DataStore;
using DataStoreRemoval = StoreFixture;

TEST_F(DataStoreRemoval, RemovesEveryRecordWithTheKeyAndReportsFalse) {
    write("a 1\r\nb 2\r\na 3\r\nc 4\r\n");
    const auto store = open();
    EXPECT_FALSE(store->remove("a"));
    EXPECT_EQ(content(), "b 2\r\nc 4\r\n");
    EXPECT_FALSE(store->exists("a"));
    EXPECT_TRUE(store->storeString("d", "5"));
    EXPECT_EQ(content(), "b 2\r\nc 4\r\nd 5\r\n");
}

TEST_F(DataStoreRemoval, LeavesTheFileAsItWasForAnAbsentKey) {
    write("a 1\r\nb 2\r\n");
    EXPECT_FALSE(open()->remove("c"));
    EXPECT_EQ(content(), "a 1\r\nb 2\r\n");
}

TEST_F(DataStoreRemoval, BringsRecordsIntoFormWhenItRewritesThem) {
    write("  a\t1\nb\v2 c 3\r\nlast");
    EXPECT_FALSE(open()->remove("c"));
    EXPECT_EQ(content(), "a 1\r\nb 2\r\nlast \r\n");
}

TEST_F(DataStoreRemoval, LeavesNoCopyAndTheFilesOwnMode) {
    const auto store = open();
    store->storeString("a", "1");
    store->remove("a");
    EXPECT_FALSE(fs::exists(copy));
    EXPECT_FALSE(fs::exists(unfinished));
    EXPECT_EQ(modeOf(path), 01600U);
}

TEST_F(DataStoreRemoval, HoldsNothingForWrittenThatCannotBeClosed) {
    for (const int error : {EIO, ENOSPC, EDQUOT}) {
        const int descriptor = PYL::openFile(path, O_WRONLY | O_CREAT);
        ASSERT_GE(descriptor, 0);
        const HookedFileCalls hooked(
            [error](const FileCall& call) { return call.name == "close" ? error : made; });
        errno = 0;
        EXPECT_FALSE(PYL::writeAndClose(descriptor, "a 1\r\n"));
        EXPECT_EQ(errno, error);
    }
    const int descriptor = PYL::openFile(path, O_WRONLY);
    const HookedFileCalls hooked(
        [](const FileCall& call) { return call.name == "close" ? EINTR : made; });
    EXPECT_TRUE(PYL::writeAndClose(descriptor, "a 1\r\n")) << "an interrupted one has closed";
}

TEST_F(DataStoreRemoval, IsNotUsableAfterARemovalThatCannotOpenTheFile) {
    write("a 1\r\nb 2\r\n");
    OpenStore store;
    fs::remove(path);
    fs::create_directory(path);
    log.journal->take();
    EXPECT_FALSE(store.remove("a"));
    EXPECT_EQ(log.journal->take(), (Lines{"information: remove():",
                                          "error: /etc/cim/t.txt cannot be rewritten: "
                                          "Is a directory"}));
    EXPECT_FALSE(store._fileCreated);
    EXPECT_EQ(store._textf, nullptr);
    EXPECT_FALSE(store.storeString("a", "1"));
    EXPECT_EQ(store.fetchString("a"), "");
    EXPECT_FALSE(static_cast<DataStore&>(store).exists("b"));
    EXPECT_TRUE(store.remove("a"));
    EXPECT_EQ(store.fetchUint64("a"), 0U);
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: storeString():", "information: fetchString():",
                     "information: public exists():", "information: remove():",
                     "information: fetchString():"}));
}

TEST_F(DataStoreRemoval, ThrowsWhenItCannotOpenTheRewrittenFileAgain) {
    write("a 1\r\nb 2\r\n");
    OpenStore store;
    log.journal->take();
    {
        const HookedFileCalls noReopen([&](const FileCall& call) {
            const bool again =
                call.name == "open" && call.path == path && (call.flags & O_ACCMODE) == O_RDWR;
            return again ? EMFILE : made;
        });
        EXPECT_EQ(messageOf([&] { store.remove("a"); }), "Too many open files");
    }
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: remove():", "error: _textdb reopen after remove() failed!"}));
    EXPECT_EQ(content(), "b 2\r\n");
    EXPECT_FALSE(store._fileCreated);
    EXPECT_EQ(store._textf, nullptr);
    EXPECT_TRUE(store.remove("b"));  // not usable, and the lock is free
}

// The kept copy

TEST_F(DataStoreRemoval, TakesTheCopyThatAnInterruptedRemovalLeft) {
    write("b ");
    write(copy, "b 2\r\nc 3\r\n");
    const auto store = open();
    EXPECT_EQ(content(), "b 2\r\nc 3\r\n");
    EXPECT_FALSE(fs::exists(copy));
    EXPECT_EQ(store->fetchString("c"), "3");
    EXPECT_EQ(log.journal->take()[2],
              "warning: /etc/cim/t.txt was restored after an interrupted removal");
}

TEST_F(DataStoreRemoval, LeavesAnUnfinishedCopyAlone) {
    write("b 2\r\n");
    write(unfinished, "b");
    const auto store = open();
    EXPECT_EQ(content(), "b 2\r\n");
    store->remove("x");
    EXPECT_EQ(content(), "b 2\r\n");
    EXPECT_FALSE(fs::exists(unfinished));
}

TEST_F(DataStoreRemoval, TakesAwayTheCopyOfAnotherThatWasKilled) {
    write("a 1\r\nb 2\r\n");
    const auto store = open();
    write(copy, "c 3\r\n");
    log.journal->take();
    store->remove("a");
    EXPECT_EQ(log.journal->take(), Lines{"information: remove():"});
    EXPECT_EQ(content(), "b 2\r\n");
    EXPECT_FALSE(fs::exists(copy));
}

TEST_F(DataStoreRemoval, IsLeftAloneByAStoreThatTheSameProcessOpensMeanwhile) {
    write("a 1\r\nb 2\r\n");
    const auto store = open();
    {
        const HookedFileCalls hooked([&](const FileCall& call) {
            if ((call.flags & O_TRUNC) != 0) {
                open();
                EXPECT_TRUE(fs::exists(copy));
            }
            return made;
        });
        store->remove("a");
    }
    EXPECT_EQ(content(), "b 2\r\n");
    EXPECT_FALSE(fs::exists(copy));
}

TEST_F(DataStoreRemoval, IsFinishedWhereTheFileSystemHasNoLocks) {
    write("b ");
    write(copy, "a 1\r\nb 2\r\n");
    {
        const HookedFileCalls noLocks(
            [&](const FileCall& call) { return call.name == "flock" ? ENOLCK : made; });
        open()->remove("a");
    }
    EXPECT_EQ(content(), "b 2\r\n");
    EXPECT_FALSE(fs::exists(copy));
}

TEST_F(DataStoreRemoval, FollowsNoLinkInThePlaceOfItsCopy) {
    write("b 2\r\n");
    fs::create_symlink("/etc/passwd", copy);
    open();
    EXPECT_EQ(content(), "b 2\r\n");
    EXPECT_EQ(log.journal->take()[2],
              "error: /etc/cim/t.txt cannot be restored after an interrupted removal: "
              "Too many levels of symbolic links");
}

TEST_F(DataStoreRemoval, SaysThatACopyCannotBeTaken) {
    write("b 2\r\n");
    fs::create_directory(copy);
    const auto store = open();
    EXPECT_EQ(log.journal->take()[2],
              "error: /etc/cim/t.txt cannot be restored after an interrupted removal: "
              "Not a directory");
    EXPECT_EQ(store->fetchString("b"), "2");
    EXPECT_FALSE(store->remove("b"));
    EXPECT_EQ(content(), "");
    EXPECT_EQ(log.journal->take().back(),
              "warning: /etc/cim/t.txt is rewritten without a copy: Is a directory");
}

TEST_F(DataStoreRemoval, SaysThatACopyMayNotSurviveAPowerFailure) {
    write("a 1\r\nb 2\r\n");
    const auto store = open();
    log.journal->take();
    const std::string folder = fs::path(path).parent_path();
    const HookedFileCalls worn([&](const FileCall& call) {
        return call.name == "fsync" && call.path == folder ? EIO : made;
    });
    EXPECT_FALSE(store->remove("a"));
    EXPECT_EQ(content(), "b 2\r\n");
    EXPECT_FALSE(fs::exists(copy));
    const auto lines = log.journal->take();
    EXPECT_TRUE(std::count(lines.begin(), lines.end(),
                           "warning: /etc/cim/t.txt is rewritten without a copy: "
                           "Input/output error"));
}

TEST_F(DataStoreRemoval, PutsACopyAsideThatCannotBeDeleted) {
    write("a 1\r\nb 2\r\n");
    const auto store = open();
    log.journal->take();
    {
        const HookedFileCalls stuck([&](const FileCall& call) {
            return call.name == "unlink" && call.path == copy ? EIO : made;
        });
        EXPECT_FALSE(store->remove("a"));
    }
    EXPECT_FALSE(fs::exists(copy)) << "it would undo what is stored from now on";
    EXPECT_TRUE(fs::exists(unfinished));
    for (const std::string& line : log.journal->take()) {
        EXPECT_EQ(line.find("is left"), std::string::npos) << line;
    }
}

TEST_F(DataStoreRemoval, KeepsTheFilesModeAndOwnerInTheCopy) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root gives files away";
    }
    write("a 1\r\nb 2\r\n");
    fs::permissions(path, fs::perms(01640));
    ASSERT_EQ(chown(path.c_str(), 12, 34), 0);
    const auto store = open();
    {
        const HookedFileCalls fullDisk([&](const FileCall& call) {
            return call.name == "pwrite" && call.path == path ? ENOSPC : made;
        });
        EXPECT_FALSE(store->remove("a"));
    }
    EXPECT_EQ(content(), "b 2\r\n");
    struct stat facts {};
    ASSERT_EQ(::stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777U, 01640U);
    EXPECT_EQ(facts.st_uid, 12U);
    EXPECT_EQ(facts.st_gid, 34U);
    EXPECT_EQ(store->fetchString("b"), "2");
}

}  // namespace
