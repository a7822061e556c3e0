#include "common/DataStoreTxt.h"

#include "common/PYLConstants.h"
#include "tests/common/FileCalls.h"
#include "tests/common/StoreFixture.h"
#include "tests/common/VirtualTable.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

namespace fs = std::filesystem;
using PYL::DataStore;
using PYL::DataStoreError;

using DataStoreTxtTest = StoreFixture;

// The interface

TEST(DataStore, HasItsOperationsInTheOrderOfItsBinaryInterface) {
    EXPECT_EQ(slotOf(&DataStore::storeString), 2);  // behind the destructor's two entries
    EXPECT_EQ(slotOf(&DataStore::fetchString), 3);
    EXPECT_EQ(slotOf(&DataStore::remove), 4);
    EXPECT_EQ(slotOf(&DataStore::exists), 5);
    EXPECT_EQ(slotOf(&DataStore::storeUint64), 6);
    EXPECT_EQ(slotOf(&DataStore::fetchUint64), 7);
    EXPECT_EQ(slotOf(&DataStore::storeTimeT), 8);
    EXPECT_EQ(slotOf(&DataStore::fetchTimeT), 9);
    EXPECT_EQ(slotOf(&DataStore::storeBool), 10);
    EXPECT_EQ(slotOf(&DataStore::fetchBool), 11);
    EXPECT_TRUE(std::is_abstract_v<DataStore>);
    EXPECT_TRUE(std::has_virtual_destructor_v<DataStore>);
    EXPECT_EQ(sizeof(DataStore), sizeof(void*));
}

TEST(DataStore, ThrowsAnErrorThatIsNoStandardException) {
    EXPECT_FALSE((std::is_base_of_v<std::exception, DataStoreError>));
    EXPECT_EQ(DataStoreError("full").message(), "full");
    EXPECT_STREQ(DataStoreError("full").what(), "full");
}

// Opening

TEST_F(DataStoreTxtTest, MakesAnEmptyFileForItsOwnerAlone) {
    umask(0);
    const auto store = open();
    umask(022);
    EXPECT_EQ(content(), "");
    EXPECT_EQ(modeOf(path), 01600U);
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: cxtor()", "information: _filename is /etc/cim/t.txt",
                     "information: fopen() success!"}));
}

TEST_F(DataStoreTxtTest, LeavesAFileThatIsThereAsItIs) {
    write("a 1\r\n");
    fs::permissions(path, fs::perms(0644));
    const auto store = open();
    EXPECT_EQ(content(), "a 1\r\n");
    EXPECT_EQ(modeOf(path), 0644U);
}

TEST_F(DataStoreTxtTest, GoesOnWithoutTheModeThatItCannotSet) {
    const HookedFileCalls noModes(
        [](const FileCall& call) { return call.name == "chmod" ? EPERM : made; });
    const auto store = open();
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: cxtor()", "information: _filename is /etc/cim/t.txt",
                     "error: file chmod failed!", "error: Operation not permitted",
                     "information: fopen() success!"}));
    EXPECT_TRUE(store->storeString("a", "1"));
}

TEST_F(DataStoreTxtTest, ThrowsWhenItCanNeitherOpenNorCreate) {
    fs::remove_all(fs::path(path).parent_path());
    EXPECT_EQ(messageOf([] { open(); }), "No such file or directory");
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: cxtor()", "information: _filename is /etc/cim/t.txt",
                     "error: file chmod failed!", "error: No such file or directory",
                     "error: first fopen() failed!"}));
}

TEST_F(DataStoreTxtTest, ThrowsForADirectoryInPlaceOfTheFile) {
    fs::create_directory(path);
    EXPECT_EQ(messageOf([] { open(); }), "Is a directory");
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: cxtor()", "information: _filename is /etc/cim/t.txt",
                     "error: first fopen() failed!"}));
}

TEST_F(DataStoreTxtTest, ThrowsInADirectoryThatItMustNotWrite) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root writes in every directory";
    }
    const auto directory = fs::path(path).parent_path();
    fs::permissions(directory, fs::perms(0500));
    EXPECT_EQ(messageOf([] { open(); }), "Permission denied");
    fs::permissions(directory, fs::perms(0700));
}

TEST_F(DataStoreTxtTest, RemovesWithoutACopyInADirectoryThatItMustNotWrite) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root writes in every directory";
    }
    write("a 1\r\nb 2\r\n");
    const auto directory = fs::path(path).parent_path();
    fs::permissions(directory, fs::perms(0500));
    const auto store = open();
    EXPECT_FALSE(store->remove("a"));
    fs::permissions(directory, fs::perms(0700));
    EXPECT_EQ(content(), "b 2\r\n");
}

TEST_F(DataStoreTxtTest, MakesTheFileThatADanglingLinkNames) {
    const auto target = path + ".target";
    fs::create_symlink(target, path);
    EXPECT_TRUE(open()->storeString("a", "1"));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(contentOf(target), "a 1\r\n");
    EXPECT_EQ(modeOf(target), 01600U);
}

TEST_F(DataStoreTxtTest, KeepsNoDescriptorWhenItIsGoneOrWasNeverMade) {
    const auto before = openDescriptors();
    open()->storeString("a", "1");
    open()->remove("a");
    fs::remove(path);
    fs::create_directory(path);
    messageOf([] { open(); });
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(DataStoreTxtTest, DoesNotPassItsDescriptorsOnToChildren) {
    const auto before = openDescriptors();
    const auto store = open();
    store->storeString("a", "1");
    store->remove("a");
    EXPECT_GT(openDescriptors(), before);
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        const int descriptor = std::stoi(entry.path().filename());
        std::error_code gone;
        if (fs::read_symlink(entry.path(), gone) != path) continue;
        EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
    }
}

// Log lines

TEST_F(DataStoreTxtTest, LogsEachOperationsSteps) {
    auto store = open();
    log.journal->take();
    store->storeString("a", "1");
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: storeString():", "information: private exists():",
                     "information: storeString() appending new key in db!"}));
    store->storeString("a", "2");
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: storeString():", "information: private exists():",
                     "information: storeString() replacing updated key in db!"}));
    store->fetchString("a");
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: fetchString():", "information: private exists():",
                     "information: fetchString() found key in db!"}));
    store->fetchString("b");
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: fetchString():", "information: private exists():",
                     "information: fetchString() did not find key in db!"}));
    store->exists("a");
    EXPECT_EQ(log.journal->take(),
              (Lines{"information: public exists():", "information: private exists():"}));
    store->remove("a");
    EXPECT_EQ(log.journal->take(), Lines{"information: remove():"});
    store.reset();
    EXPECT_EQ(log.journal->take(), Lines{"information: dxtor()"});
}

TEST_F(DataStoreTxtTest, LogsTypedOperationsAsThoseOfTheirText) {
    const auto store = open();
    log.journal->take();
    store->storeUint64("a", 1);
    store->fetchBool("a");
    EXPECT_EQ(
        log.journal->take(),
        (Lines{"information: storeString():", "information: private exists():",
               "information: storeString() appending new key in db!", "information: fetchString():",
               "information: private exists():", "information: fetchString() found key in db!"}));
}

// Records

TEST_F(DataStoreTxtTest, WritesALineARecord) {
    const auto store = open();
    EXPECT_TRUE(store->storeString("first", "1"));
    EXPECT_TRUE(store->storeString("second", "two"));
    EXPECT_EQ(content(), "first 1\r\nsecond two\r\n");
    EXPECT_EQ(store->fetchString("first"), "1");
    EXPECT_EQ(store->fetchString("second"), "two");
    EXPECT_TRUE(store->exists("first"));
}

TEST_F(DataStoreTxtTest, KeepsWhatItHoldsForTheNextStore) {
    open()->storeString("a", "1");
    EXPECT_EQ(open()->fetchString("a"), "1");
}

TEST_F(DataStoreTxtTest, LeavesOneLineForAKeyThatIsStoredAgain) {
    const auto store = open();
    for (const auto* const value : {"111", "222", "333"}) {
        EXPECT_TRUE(store->storeString("a", value));
    }
    EXPECT_EQ(content(), "a 333\r\n");
}

TEST_F(DataStoreTxtTest, TakesTheFirstOfSeveralRecordsWithOneKey) {
    write("a 1\r\na 2\r\n");
    const auto store = open();
    EXPECT_EQ(store->fetchString("a"), "1");
    store->storeString("a", "3");
    EXPECT_EQ(content(), "a 3\r\na 2\r\n");
}

TEST_F(DataStoreTxtTest, TellsKeysApartByCaseAndToTheEnd) {
    write("Key 1\r\nkeys 2\r\n");
    const auto store = open();
    EXPECT_FALSE(store->exists("key"));
    EXPECT_FALSE(store->exists("Ke"));
    EXPECT_FALSE(store->exists("1"));
    EXPECT_EQ(store->fetchString("keys"), "2");
}

TEST_F(DataStoreTxtTest, LeavesTheTailOfAnOldLineBehindAShorterValue) {
    write("a 12345\r\nb 2\r\n");
    open()->storeString("a", "1");
    EXPECT_EQ(content(), "a 1\r\n45\r\nb 2\r\n");
    EXPECT_FALSE(open()->exists("b"));
    EXPECT_EQ(open()->fetchString("45"), "b");
}

TEST_F(DataStoreTxtTest, RunsOverTheNextRecordWithALongerValue) {
    write("a 1\r\nb 2\r\nc 3\r\n");
    open()->storeString("a", "123456");
    EXPECT_EQ(content(), "a 123456\r\nc 3\r\n");
    EXPECT_FALSE(open()->exists("b"));
    EXPECT_EQ(open()->fetchString("c"), "3");
}

TEST_F(DataStoreTxtTest, ReadsAValueWithABlankToItsFirstWord) {
    const auto store = open();
    store->storeString("a", "one two");
    EXPECT_EQ(content(), "a one two\r\n");
    EXPECT_EQ(store->fetchString("a"), "one");
}

TEST_F(DataStoreTxtTest, ReadsTheNextKeyInPlaceOfAnEmptyValue) {
    const auto store = open();
    store->storeString("a", "");
    EXPECT_EQ(content(), "a \r\n");
    EXPECT_TRUE(store->exists("a"));
    EXPECT_EQ(store->fetchString("a"), "");
    store->storeString("b", "1");
    EXPECT_EQ(store->fetchString("a"), "b");
}

TEST_F(DataStoreTxtTest, WritesAndReadsUncommonWordsAsTheyAre) {
    const auto store = open();
    for (const auto* const word : {"%s%n%d", "\"quoted\"", "'", "\xff\xfe\x80", "\xc3\xa4", "#",
                                   "\\r\\n", "-", "=", "\x01"}) {
        EXPECT_TRUE(store->storeString(word, word));
        EXPECT_EQ(store->fetchString(word), word);
    }
}

TEST_F(DataStoreTxtTest, CutsWordsAtAZeroByte) {
    const auto store = open();
    store->storeString(std::string("a\0b", 3), std::string("1\0002", 3));
    EXPECT_EQ(content(), "a 1\r\n");
    EXPECT_EQ(store->fetchString("a"), "1");
}

TEST_F(DataStoreTxtTest, SurvivesTheLongestWordsAndLonger) {
    const auto store = open();
    const std::string longest(1023, 'k');
    store->storeString(longest, std::string(1023, 'v'));
    EXPECT_EQ(store->fetchString(longest), std::string(1023, 'v'));

    const std::string huge(1 << 20, 'h');
    EXPECT_TRUE(store->storeString(huge, huge));
    EXPECT_FALSE(store->exists(huge));
    EXPECT_EQ(store->fetchString(std::string(1023, 'h')), std::string(1023, 'h'));
    EXPECT_EQ(fs::file_size(path), 2U * 1023 + 3 + 2U * (1 << 20) + 3);
}

TEST_F(DataStoreTxtTest, ReadsAFileAfreshEachTime) {
    const auto store = open();
    write("a 1\r\n");
    EXPECT_EQ(store->fetchString("a"), "1");
    write("a 2\r\n");
    EXPECT_EQ(store->fetchString("a"), "2");
}

TEST_F(DataStoreTxtTest, WritesOnIntoAFileThatVanishedAndMakesItAgainInARemoval) {
    const auto store = open();
    store->storeString("a", "1");
    fs::remove(path);
    EXPECT_TRUE(store->storeString("b", "2"));
    EXPECT_EQ(store->fetchString("a"), "1");
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(store->remove("a"));
    EXPECT_EQ(content(), "b 2\r\n");
}

TEST_F(DataStoreTxtTest, ReadsAHugeFileWithoutLineEnds) {
    write("");
    fs::resize_file(path, std::uintmax_t{100} << 20);
    const auto store = open();
    EXPECT_FALSE(store->exists("a"));
    EXPECT_TRUE(store->exists(""));  // as C reads words of zero bytes
    EXPECT_EQ(store->fetchString("a"), "");
}

// The look-up that derived stores use

TEST_F(DataStoreTxtTest, TellsTheOffsetOfARecordsLine) {
    write(" \r\na 1\r\n\r\n b 2\r\n");
    OpenStore store;
    std::string value = "untouched";
    long position = -1;
    EXPECT_TRUE(store.exists("a", &value, &position));
    EXPECT_EQ(value, "1");
    EXPECT_EQ(position, 0);
    EXPECT_TRUE(store.exists("b", &value, &position));
    EXPECT_EQ(value, "2");
    EXPECT_EQ(position, 11);
    value = "untouched";
    EXPECT_FALSE(store.exists("c", &value, &position));
    EXPECT_EQ(value, "untouched");
    EXPECT_EQ(position, 16);
    EXPECT_TRUE(store.exists("b", nullptr, nullptr));
}

TEST_F(DataStoreTxtTest, KeepsTheFileOpenWhileItIsUsable) {
    OpenStore store;
    EXPECT_EQ(store._filename, std::string(PYL::PersistentDataDir) + "t.txt");
    EXPECT_TRUE(store._fileCreated);
    EXPECT_NE(store._textf, nullptr);
}

// Typed values

TEST_F(DataStoreTxtTest, StoresNumbersTimesAndFlagsAsDecimalText) {
    const auto store = open();
    EXPECT_TRUE(store->storeUint64("u", std::numeric_limits<unsigned long>::max()));
    EXPECT_TRUE(store->storeTimeT("t", std::numeric_limits<long>::min()));
    EXPECT_TRUE(store->storeBool("yes", true));
    EXPECT_TRUE(store->storeBool("no", false));
    EXPECT_EQ(content(), "u 18446744073709551615\r\nt -9223372036854775808\r\nyes 1\r\nno 0\r\n");
    EXPECT_EQ(store->fetchUint64("u"), std::numeric_limits<unsigned long>::max());
    EXPECT_EQ(store->fetchTimeT("t"), std::numeric_limits<long>::min());
    EXPECT_TRUE(store->fetchBool("yes"));
    EXPECT_FALSE(store->fetchBool("no"));
}

TEST_F(DataStoreTxtTest, ReadsZeroForAMissingKeyAndForNoNumber) {
    write("text abc\r\n");
    const auto store = open();
    for (const auto* const key : {"missing", "text"}) {
        EXPECT_EQ(store->fetchUint64(key), 0U);
        EXPECT_EQ(store->fetchTimeT(key), 0);
        EXPECT_FALSE(store->fetchBool(key));
    }
}

TEST_F(DataStoreTxtTest, ReadsNumbersAsAStringStreamDoes) {
    write("padded 00042\r\ntail 7x\r\nbig 99999999999999999999\r\n");
    const auto store = open();
    EXPECT_EQ(store->fetchUint64("padded"), 42U);
    EXPECT_EQ(store->fetchTimeT("tail"), 7);
    EXPECT_EQ(store->fetchUint64("big"), std::numeric_limits<unsigned long>::max());
    EXPECT_EQ(store->fetchTimeT("big"), std::numeric_limits<long>::max());
}

// Threads

TEST_F(DataStoreTxtTest, ServesSeveralThreadsAtOnce) {
    const auto store = open();
    constexpr int rounds = 100;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&store, key = "key" + std::to_string(i)] {
                for (unsigned long round = 1; round <= rounds; ++round) {
                    EXPECT_TRUE(store->storeUint64(key, 1000 + round));
                    EXPECT_EQ(store->fetchUint64(key), 1000 + round);
                    EXPECT_FALSE(store->remove(round % 10 == 0 && round < rounds ? key : "x"));
                }
            });
        }
        threads.emplace_back([&store] {
            for (int round = 0; round < rounds; ++round) store->exists("key0");
        });
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(store->fetchUint64("key" + std::to_string(i)), 1000U + rounds);
    }
}

}  // namespace
