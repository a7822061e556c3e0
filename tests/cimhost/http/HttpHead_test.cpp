#include "cimhost/http/HttpHead.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

const std::string requestLine = "POST / HTTP/1.1\r\n";

std::string fieldOfBytes(std::size_t lineBytes) {
    return "N: " + std::string(lineBytes - 3, 'v') + "\r\n";
}

struct HttpHeadTest : testing::Test {
    HttpLimits limits;
    HttpHead head{limits};

    int refusalOf(std::string_view text) {
        head.clear();
        head.feed(text);
        return head.refusal();
    }

    /// The same byte by byte.
    int refusalOfTrickle(std::string_view text) {
        head.clear();
        for (const char byte : text) head.feed({&byte, 1});
        return head.refusal();
    }
};

TEST_F(HttpHeadTest, EndsAtTheEmptyLineAndLeavesTheBody) {
    const std::string text = requestLine + "Host: a\r\n\r\n";
    EXPECT_EQ(head.feed(text + "body"), text.size());
    EXPECT_TRUE(head.isComplete());
    EXPECT_EQ(head.text(), text);
    EXPECT_EQ(head.refusal(), 0);
}

TEST_F(HttpHeadTest, IsTheSameByteByByte) {
    const std::string text = requestLine + "Host: a\r\n\r\n";
    EXPECT_EQ(refusalOfTrickle(text), 0);
    EXPECT_TRUE(head.isComplete());
    EXPECT_EQ(head.text(), text);
}

TEST_F(HttpHeadTest, IgnoresEmptyLinesBeforeTheRequest) {
    const std::string text = requestLine + "\r\n";
    EXPECT_EQ(refusalOf("\r\n\r\n" + text), 0);
    EXPECT_EQ(head.text(), text);
}

TEST_F(HttpHeadTest, IsNotEmptyOnceAnEmptyLineCame) {
    EXPECT_TRUE(head.isEmpty());
    head.feed("\r\n");
    EXPECT_FALSE(head.isEmpty());
    head.clear();
    EXPECT_TRUE(head.isEmpty());
}

TEST_F(HttpHeadTest, TakesAHeaderLineOfTheLimitAndRefusesOneByteMore) {
    EXPECT_EQ(refusalOf(requestLine + fieldOfBytes(8192)), 0);
    EXPECT_EQ(refusalOf(requestLine + fieldOfBytes(8193)), 431);
    EXPECT_EQ(refusalOfTrickle(requestLine + fieldOfBytes(8192)), 0);
    EXPECT_EQ(refusalOfTrickle(requestLine + fieldOfBytes(8193)), 431);
}

TEST_F(HttpHeadTest, RefusesALongLineBeforeItsEnd) {
    EXPECT_EQ(refusalOf(requestLine + std::string(8193, 'x')), 431);
}

TEST_F(HttpHeadTest, AnswersALongLineAlikeHoweverItsBytesArrive) {
    const std::string line = "GET /" + std::string(limits.lineBytes, 'a');
    for (const std::string& text : {line + "\x01", line + "\x01\r\n"}) {
        EXPECT_EQ(refusalOf(text), 414);
        EXPECT_EQ(refusalOfTrickle(text), 414);
    }
    const std::string early = "GET /\x01" + line;
    EXPECT_EQ(refusalOf(early), 400);
    EXPECT_EQ(refusalOfTrickle(early), 400);
}

TEST_F(HttpHeadTest, TakesARequestLineOfTheLimitAndRefusesOneByteMore) {
    const std::string around = "POST /" + std::string(" HTTP/1.1");
    const auto line = [&](std::size_t bytes) {
        return "POST /" + std::string(bytes - around.size(), 'a') + " HTTP/1.1\r\n";
    };
    EXPECT_EQ(refusalOf(line(8192)), 0);
    EXPECT_EQ(refusalOf(line(8193)), 414);
}

TEST_F(HttpHeadTest, TakesAHeadOfTheLimitAndRefusesOneByteMore) {
    const auto headOfBytes = [&](std::size_t bytes) {
        std::string text = requestLine;
        while (bytes - text.size() > 9000) text += fieldOfBytes(8000);
        text += fieldOfBytes((bytes - text.size()) / 2);
        text += fieldOfBytes(bytes - text.size() - 4);
        return text + "\r\n";
    };
    ASSERT_EQ(headOfBytes(65536).size(), 65536U);
    EXPECT_EQ(refusalOf(headOfBytes(65536)), 0);
    EXPECT_TRUE(head.isComplete());
    EXPECT_EQ(refusalOf(headOfBytes(65537)), 431);
}

TEST_F(HttpHeadTest, CountsEmptyLinesTowardsTheLimitOfTheHead) {
    std::string lines;
    while (lines.size() < 65538) lines += "\r\n";
    EXPECT_EQ(refusalOf(lines), 431);
}

TEST_F(HttpHeadTest, TakesAHundredFieldsAndRefusesOneMore) {
    std::string text = requestLine;
    for (int i = 0; i < 100; ++i) text += "N: v\r\n";
    EXPECT_EQ(refusalOf(text + "\r\n"), 0);
    EXPECT_TRUE(head.isComplete());
    EXPECT_EQ(refusalOf(text + "N: v\r\n"), 431);
}

TEST_F(HttpHeadTest, KeepsNothingBeyondTheLimitHoweverMuchArrivesAtOnce) {
    const std::string flood(1'000'000, 'x');
    EXPECT_LE(head.feed(flood), limits.headBytes + 1);
    EXPECT_EQ(head.feed(flood), 0U) << "takes no more once refused";
}

TEST_F(HttpHeadTest, RefusesOtherVersions) {
    EXPECT_EQ(refusalOf("POST / HTTP/1.0\r\n"), 0);
    EXPECT_EQ(refusalOf("POST / HTTP/2.0\r\n"), 505);
    EXPECT_EQ(refusalOf("PRI * HTTP/2.0\r\n"), 505);
    EXPECT_EQ(refusalOf("POST / HTTP/0.9\r\n"), 505);
    EXPECT_EQ(refusalOf("POST / HTTP/1.2\r\n"), 505);
}

TEST_F(HttpHeadTest, RefusesWhatIsNoRequestLineAsSoonAsItEnds) {
    EXPECT_EQ(refusalOf("GET /\r\n"), 400);
    EXPECT_EQ(refusalOf("HTTP/1.1\r\n"), 400);
    EXPECT_EQ(refusalOf("POST / HTTP/11.1\r\n"), 400);
    EXPECT_EQ(refusalOf("POST / HTTP/1.1 \r\n"), 400);
    EXPECT_EQ(refusalOf("POST / http/1.1\r\n"), 400);
    EXPECT_EQ(refusalOf("POST / HTTP/1,1\r\n"), 400);
}

TEST_F(HttpHeadTest, RefusesFoldedLines) {
    EXPECT_EQ(refusalOf(requestLine + "N: v\r\n more\r\n\r\n"), 400);
    EXPECT_EQ(refusalOf(requestLine + "N: v\r\n\tmore\r\n\r\n"), 400);
    EXPECT_EQ(refusalOf(" POST / HTTP/1.1\r\n"), 400);
}

TEST_F(HttpHeadTest, RefusesLinesThatEndInABareLineFeed) {
    EXPECT_EQ(refusalOf("POST / HTTP/1.1\n"), 400);
    EXPECT_EQ(refusalOf(requestLine + "N: v\n"), 400);
    EXPECT_EQ(refusalOf("\n"), 400);
}

TEST_F(HttpHeadTest, RefusesControlCharactersWithoutWaitingForTheLine) {
    EXPECT_EQ(refusalOf(std::string("PO\0ST", 5)), 400);
    EXPECT_EQ(refusalOf("\x16\x03\x01"), 400) << "a TLS greeting";
    EXPECT_EQ(refusalOf(requestLine + "N: \x7F"), 400);
    EXPECT_EQ(refusalOf(requestLine + "N:\ta\xC3\xA4"), 0)
        << "tabs and bytes beyond ASCII are legal";
}

}  // namespace
}  // namespace cimhost
