#include "common/detail/WordReader.h"

#include "tests/common/FileCalls.h"
#include "tests/common/PlainStore.h"
#include "tests/common/RecordWalk.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <random>
#include <string>
#include <vector>

namespace {

using PYL::WordReader;

constexpr std::size_t bufferSize = 16384;

void expectPlainRecords(const std::string& bytes, const std::string& what) {
    const MemoryFile file(bytes);
    const auto plain = readPlainRecords(file.stream());
    const auto ours = readRecords(file.descriptor());
    ASSERT_EQ(ours.size(), plain.size()) << what;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        EXPECT_EQ(ours[i].position, plain[i].position) << what << ", record " << i;
        EXPECT_EQ(ours[i].words, plain[i].words) << what << ", record " << i;
        EXPECT_EQ(ours[i].key, plain[i].key) << what << ", record " << i;
        EXPECT_EQ(ours[i].value, plain[i].value) << what << ", record " << i;
    }
}

std::vector<std::string> allWords(const std::string& bytes) {
    const MemoryFile file(bytes);
    WordReader words(file.descriptor());
    std::vector<std::string> all;
    for (auto word = words.next(); !word.empty(); word = words.next()) all.emplace_back(word);
    return all;
}

TEST(WordReader, ReadsWordsBetweenWhiteSpaceOfEveryKind) {
    EXPECT_EQ(allWords(" a\tb\nc\vd\fe\rf\r\n\r\n g "),
              (std::vector<std::string>{"a", "b", "c", "d", "e", "f", "g"}));
}

TEST(WordReader, TakesEveryOtherByteForAWordsOwn) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text{'a', static_cast<char>(byte), 'b', ' ', 'c'};
        const bool space = byte == ' ' || (byte >= '\t' && byte <= '\r');
        EXPECT_EQ(allWords(text).size(), space ? 3U : 2U) << byte;
        expectPlainRecords(text, "byte " + std::to_string(byte));
    }
}

TEST(WordReader, FindsNoWordInNothingAndInWhiteSpace) {
    EXPECT_EQ(allWords("").size(), 0U);
    EXPECT_EQ(allWords(" \t\r\n\v\f").size(), 0U);
    EXPECT_EQ(allWords(std::string(3 * bufferSize, ' ')).size(), 0U);
}

TEST(WordReader, CutsALongWordIntoPieces) {
    const auto words = allWords(std::string(2500, 'x') + " y");
    ASSERT_EQ(words.size(), 4U);
    EXPECT_EQ(words[0].size(), WordReader::longestWord);
    EXPECT_EQ(words[1].size(), WordReader::longestWord);
    EXPECT_EQ(words[2].size(), 2500 - 2 * WordReader::longestWord);
    EXPECT_EQ(words[3], "y");
}

TEST(WordReader, ReadsWordsOfEveryLengthNearTheLimitAsFscanfDoes) {
    for (std::size_t length = 1020; length <= 2050; ++length) {
        const std::string word(length, 'x');
        expectPlainRecords(word, std::to_string(length));
        expectPlainRecords("k " + word + "\r\nnext 1\r\n", "value " + std::to_string(length));
        expectPlainRecords(word + " v\r\nnext 1\r\n", "key " + std::to_string(length));
    }
}

TEST(WordReader, ReadsWordsAcrossTheBuffersEndAsFscanfDoes) {
    for (std::size_t spaces = bufferSize - 1100; spaces < bufferSize + 8; ++spaces) {
        expectPlainRecords(std::string(spaces, ' ') + std::string(1023, 'k') + " v\r\nnext 1\r\n",
                           std::to_string(spaces));
    }
}

TEST(WordReader, ReadsHostileTextsAsFscanfDoes) {
    using namespace std::string_literals;
    for (const auto& text :
         {""s, "a"s, "a "s, "a b"s, "a b c"s, "a b\r\nc"s, "a b\r\nc \r\n"s, "\0"s, "\0 \0"s,
          "a\0b c\0d\r\ne f\r\n"s, "\r\n\r\na b"s, "a b\n\n\n\nc d\n"s, "a  b\t\r\n\tc d"s,
          "\xff\xfe \x80\x81\r\n"s, "\xc2\xa0 \xe2\x80\xa8\r\n"s, "%s %n\r\n%d \"'\r\n"s,
          "a\rb\nc d"s, std::string(5000, '\0'), std::string(5000, '\n') + "a b"}) {
        expectPlainRecords(text, testing::PrintToString(text));
    }
}

TEST(WordReader, ReadsRandomTextsAsFscanfDoes) {
    std::mt19937 random(1);
    const std::vector<std::string> pieces = {" ",
                                             "\r\n",
                                             "\n",
                                             "\t",
                                             "\v",
                                             "\f",
                                             "\r",
                                             "  \r\n ",
                                             std::string(1, '\0'),
                                             "key",
                                             "value",
                                             std::string(1022, 'a'),
                                             std::string(1023, 'b'),
                                             std::string(1024, 'c'),
                                             std::string(2046, 'd'),
                                             std::string(bufferSize, 'e'),
                                             std::string(bufferSize, ' '),
                                             "\xe9",
                                             "%s"};
    const std::discrete_distribution<std::size_t> rarelyLong{20, 20, 5, 5, 5, 5, 5, 5, 10, 20,
                                                             20, 2,  2, 2, 2, 1, 1, 5, 5};
    auto choose = rarelyLong;
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (auto count = random() % 60; count > 0; --count) text += pieces[choose(random)];
        expectPlainRecords(text, "round " + std::to_string(round));
    }
}

TEST(WordReader, TellsTheOffsetBehindTheWhiteSpace) {
    const MemoryFile file("  ab \r\n cd");
    WordReader words(file.descriptor());
    EXPECT_EQ(words.skipSpace(), 2);
    EXPECT_EQ(words.next(), "ab");
    EXPECT_EQ(words.skipSpace(), 8);
    EXPECT_EQ(words.next(), "cd");
    EXPECT_EQ(words.skipSpace(), 10);
    EXPECT_FALSE(words.failed());
}

TEST(WordReader, LeavesTheDescriptorsPositionAlone) {
    const MemoryFile file("a b c");
    lseek(file.descriptor(), 4, SEEK_SET);
    WordReader words(file.descriptor());
    EXPECT_EQ(words.next(), "a");
    EXPECT_EQ(lseek(file.descriptor(), 0, SEEK_CUR), 4);
}

TEST(WordReader, ReadsOnAfterShortReads) {
    std::string text;
    for (int i = 0; i < 5000; ++i) text += std::to_string(i) + " value\r\n";
    const MemoryFile file(text);
    const auto whole = readRecords(file.descriptor());
    ASSERT_EQ(whole.size(), 5000U);
    const HookedFileCalls shortReads([](const FileCall&) { return halved; });
    EXPECT_EQ(readRecords(file.descriptor()), whole);
}

TEST(WordReader, ReadsOnAfterAnInterruption) {
    const MemoryFile file("key value\r\n");
    int calls = 0;
    const HookedFileCalls interrupted([&](const FileCall&) { return ++calls % 2 ? EINTR : made; });
    WordReader words(file.descriptor());
    EXPECT_EQ(words.next(), "key");
    EXPECT_EQ(words.next(), "value");
    EXPECT_EQ(words.next(), "");
    EXPECT_FALSE(words.failed());
    EXPECT_GE(calls, 2);
}

TEST(WordReader, TellsAFailingReadFromTheEnd) {
    WordReader none(-1);
    EXPECT_EQ(none.next(), "");
    EXPECT_TRUE(none.failed());
    EXPECT_EQ(none.error(), EBADF);

    const int directory = ::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    WordReader unreadable(directory);
    EXPECT_EQ(unreadable.next(), "");
    EXPECT_EQ(unreadable.error(), EISDIR);
    ::close(directory);
}

TEST(WordReader, RemembersAFailureThatDoesNotLast) {
    const MemoryFile file("word " + std::string(2 * bufferSize, 'x'));
    int calls = 0;
    const HookedFileCalls failsOnce([&](const FileCall&) { return ++calls == 2 ? EIO : made; });
    WordReader words(file.descriptor());
    while (!words.next().empty()) {
    }
    EXPECT_TRUE(words.failed());
    EXPECT_EQ(words.error(), EIO);
}

}  // namespace
