#include "cimhost/http/Spool.h"

#include "tests/cimhost/http/TestServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <optional>

namespace cimhost {
namespace {

using testing::HasSubstr;

struct SpoolTest : testing::Test {
    TemporaryFolder folder;

    static void append(Spool& spool, std::string_view text) { spool.append({&text, 1}); }

    /// Takes all out, in steps of at most so many bytes.
    static std::string drain(Spool& spool, std::size_t step = std::string::npos) {
        std::string text;
        while (!spool.isEmpty()) {
            const std::string_view piece = spool.front().substr(0, step);
            text += piece;
            spool.pop(piece.size());
        }
        return text;
    }

    static std::string numbered(std::size_t size) {
        std::string text;
        for (std::size_t i = 0; text.size() < size; ++i) text += std::to_string(i) + " ";
        return text.substr(0, size);
    }

    static std::optional<SpoolError> failureOf(Spool& spool, std::string_view text) {
        try {
            append(spool, text);
        } catch (const SpoolError& error) {
            return error;
        }
        return std::nullopt;
    }
};

TEST_F(SpoolTest, KeepsInMemoryWhatTheBudgetAllows) {
    SpoolStore store(1000, 0, "/nowhere");
    Spool spool(store);
    EXPECT_TRUE(spool.isEmpty());
    EXPECT_EQ(spool.front(), "");
    const std::string first = numbered(600);
    const std::string second(400, 'b');
    append(spool, first);
    append(spool, second);
    EXPECT_EQ(store.memory.used(), 1000U);
    EXPECT_EQ(drain(spool, 7), first + second);
    EXPECT_EQ(store.memory.used(), 0U);
}

TEST_F(SpoolTest, LeavesOutWhatTheClientHasTaken) {
    SpoolStore store(1000, 0);
    Spool spool(store);
    const std::string_view pieces[] = {"head", "", "body", "end"};
    spool.append(pieces, 6);
    EXPECT_EQ(drain(spool), "dyend");
    spool.append(pieces, 11);
    EXPECT_TRUE(spool.isEmpty());
}

TEST_F(SpoolTest, GoesOnInAFileWithoutANameAndKeepsTheOrder) {
    SpoolStore store(100'000, 1'000'000, folder.path());
    const std::size_t before = openDescriptors();
    Spool spool(store);
    const std::string text = numbered(500'000);
    for (std::size_t at = 0; at < text.size(); at += 30'000) {
        append(spool, std::string_view(text).substr(at, 30'000));
    }
    EXPECT_EQ(store.memory.used(), 90'000U);
    EXPECT_EQ(store.disk.used(), 410'000U);
    EXPECT_EQ(openDescriptors(), before + 1);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    EXPECT_EQ(drain(spool, 40'000), text);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(store.memory.used(), 0U);
    EXPECT_EQ(store.disk.used(), 0U);
}

TEST_F(SpoolTest, KeepsTheOrderWhenMemoryGetsFreeBeforeTheFileIsRead) {
    SpoolStore store(10, 1000, folder.path());
    Spool spool(store);
    append(spool, "0123456789");
    append(spool, "abc");
    EXPECT_EQ(spool.front(), "0123456789");
    spool.pop(10);
    append(spool, "def");
    EXPECT_EQ(store.memory.used(), 0U) << "what is younger than the file is in the file";
    EXPECT_EQ(drain(spool, 2), "abcdef");
    append(spool, "again");
    EXPECT_EQ(store.memory.used(), 5U);
    EXPECT_EQ(drain(spool), "again");
}

TEST_F(SpoolTest, AppendsToAFileThatIsHalfRead) {
    SpoolStore store(0, 1000, folder.path());
    Spool spool(store);
    append(spool, "abcd");
    EXPECT_EQ(spool.front(), "abcd");
    spool.pop(1);
    append(spool, "ef");
    EXPECT_EQ(drain(spool), "bcdef");
}

TEST_F(SpoolTest, RefusesWhatIsBeyondTheLimitAndKeepsWhatItHas) {
    SpoolStore store(4, 6, folder.path());
    Spool spool(store);
    append(spool, "1234");
    append(spool, "56789A");
    const auto failure = failureOf(spool, "B");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), SpoolError::Kind::full);
    EXPECT_EQ(drain(spool), "123456789A");
    EXPECT_FALSE(failureOf(spool, "next"));
    EXPECT_EQ(drain(spool), "next");
}

TEST_F(SpoolTest, SharesItsBudgetsAndGivesThemBack) {
    SpoolStore store(10, 10, folder.path());
    Spool other(store);
    {
        Spool spool(store);
        append(spool, "12345678");
        append(spool, "abcd");
        append(other, "xy");
        EXPECT_EQ(store.memory.used(), 10U);
        append(other, "zzzzzz");
        EXPECT_TRUE(failureOf(other, "z"));
    }
    EXPECT_FALSE(failureOf(other, "z"));
    EXPECT_EQ(store.memory.used(), 2U);
    EXPECT_EQ(store.disk.used(), 7U);
    other.clear();
    EXPECT_TRUE(other.isEmpty());
    EXPECT_EQ(store.memory.used() + store.disk.used(), 0U);
    append(other, "new");
    EXPECT_EQ(drain(other), "new");
}

TEST_F(SpoolTest, SaysWhichFolderFails) {
    SpoolStore store(0, 1000, folder / "absent");
    Spool spool(store);
    const auto failure = failureOf(spool, "text");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->kind(), SpoolError::Kind::failed);
    EXPECT_THAT(failure->what(),
                HasSubstr("cannot make a temporary file in " + (folder / "absent").string() +
                          ": No such file or directory"));
    EXPECT_TRUE(spool.isEmpty());
    EXPECT_EQ(store.disk.used(), 0U);
}

/// A limit on the size of files stands in for a disk that is full.
struct SmallFiles {
    rlimit before{};
    explicit SmallFiles(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small{bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
};

TEST_F(SpoolTest, SaysThatTheDiskFailsAndKeepsWhatItHas) {
    SpoolStore store(0, 1000, folder.path());
    Spool spool(store);
    append(spool, "before ");
    {
        const SmallFiles full(10);
        const auto failure = failureOf(spool, "does not fit");
        ASSERT_TRUE(failure);
        EXPECT_THAT(failure->what(), HasSubstr("cannot write to a temporary file in " +
                                               folder.path().string() + ": File too large"));
    }
    EXPECT_EQ(store.disk.used(), 7U);
    append(spool, "after");
    EXPECT_EQ(drain(spool), "before after");
}

TEST_F(SpoolTest, TakesTheFolderThatTheEnvironmentNames) {
    const char* const variable = std::getenv("TMPDIR");
    const std::optional<std::string> before =
        variable ? std::optional<std::string>(variable) : std::nullopt;
    setenv("TMPDIR", folder.path().c_str(), 1);
    EXPECT_EQ(SpoolStore(0, 0).folder, folder.path());
    setenv("TMPDIR", "", 1);
    EXPECT_EQ(SpoolStore(0, 0).folder, "/tmp");
    unsetenv("TMPDIR");
    EXPECT_EQ(SpoolStore(0, 0).folder, "/tmp");
    if (before) setenv("TMPDIR", before->c_str(), 1);
}

}  // namespace
}  // namespace cimhost
