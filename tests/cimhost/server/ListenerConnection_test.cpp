#include "cimhost/server/ListenerConnection.h"

#include "tests/cimhost/http/ScriptedServer.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <charconv>
#include <thread>

namespace cimhost {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;
using Problem = std::optional<std::string>;

constexpr std::string_view taken =
    "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
    "<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEEXPRSP>"
    "<EXPMETHODRESPONSE NAME=\"ExportIndication\"><IRETURNVALUE/></EXPMETHODRESPONSE>"
    "</SIMPLEEXPRSP></MESSAGE></CIM>";
constexpr std::string_view head = "HTTP/1.1 200 OK\r\n";

ListenerConnection connectionTo(const ScriptedServer& server,
                                std::chrono::milliseconds attemptTime = std::chrono::minutes(1)) {
    return {{"127.0.0.1", server.port(), "/listen"}, attemptTime};
}

/// What becomes of a message that is answered with these bytes, and then with the connection's end.
Problem answered(const std::string& answer) {
    ScriptedServer server([&answer](const std::string&, Stream& client) {
        send(client, answer);
        return false;
    });
    return connectionTo(server).post("<CIM/>");
}

std::string inChunks(std::string_view body, std::size_t size) {
    std::string text(head);
    text += "Transfer-Encoding: chunked\r\n\r\n";
    for (; !body.empty(); body.remove_prefix(std::min(size, body.size()))) {
        const std::string_view chunk = body.substr(0, size);
        std::array<char, 16> digits{};
        const auto end = std::to_chars(digits.begin(), digits.end(), chunk.size(), 16).ptr;
        text.append(digits.begin(), end).append("\r\n").append(chunk).append("\r\n");
    }
    return text + "0\r\n\r\n";
}

TEST(ListenerConnection, SendsAnExportAsDsp0200HasIt) {
    ScriptedServer server([](const std::string&, Stream& client) {
        send(client, answerWith(taken));
        return true;
    });
    EXPECT_EQ(connectionTo(server).post("<CIM/>"), std::nullopt);
    EXPECT_EQ(server.requests().at(0),
              "POST /listen HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port()) +
                  "\r\nContent-Type: application/xml; charset=\"utf-8\"\r\n"
                  "CIMProtocolVersion: 1.0\r\nCIMExport: MethodRequest\r\n"
                  "CIMExportMethod: ExportIndication\r\nContent-Length: 6\r\n\r\n<CIM/>");
}

TEST(ListenerConnection, TakesAnAnswerInAnyOfHttpsForms) {
    EXPECT_EQ(answered(answerWith(taken)), std::nullopt);
    EXPECT_EQ(answered(inChunks(taken, 7)), std::nullopt);
    EXPECT_EQ(answered("HTTP/1.0 200 OK\r\n\r\n" + std::string(taken)), std::nullopt);
    EXPECT_EQ(answered("HTTP/1.1 100 Continue\r\n\r\n" + answerWith(taken)), std::nullopt);
}

TEST(ListenerConnection, TellsWhyTheListenerDidNotTakeIt) {
    EXPECT_EQ(answered("HTTP/1.1 500 No\r\nContent-Length: 2\r\n\r\nno"),
              "the listener answered 500");
    EXPECT_NE(answered(answerWith("<CIM/>")), std::nullopt);
    EXPECT_NE(answered(answerWith("")), std::nullopt);
}

TEST(ListenerConnection, RefusesAnAnswerThatIsNoHttp) {
    std::string interim;
    for (int i = 0; i < 100; ++i) interim += "HTTP/1.1 100 Continue\r\n\r\n";
    EXPECT_THAT(answered(interim), Optional(HasSubstr("nothing but interim answers")));
    for (const std::string& bad :
         {std::string("garbage\r\n\r\n"), std::string("HTTP/1.1 2000 OK\r\n\r\n"),
          std::string(head) + "Content-Length: -1\r\n\r\n",
          std::string(head) + "Transfer-Encoding: chunked\r\n\r\nzz\r\n",
          std::string(head) + "X: " + std::string(100'000, 'a') + "\r\n\r\n",
          std::string(head) + "no colon\r\n\r\n"}) {
        EXPECT_THAT(answered(bad), Optional(StartsWith("the answer is no HTTP: "))) << bad;
    }
}

TEST(ListenerConnection, TakesNoMoreOfAnAnswerThanItsLimitWhateverIsAnnounced) {
    const std::string most =
        std::string(taken) + std::string(ListenerConnection::answerBytes - taken.size(), ' ');
    EXPECT_EQ(answered(answerWith(most)), std::nullopt);
    EXPECT_EQ(answered(answerWith(most + ' ')), "the answer is too long");
    EXPECT_EQ(answered(inChunks(most + ' ', 1000)), "the answer is too long");
    EXPECT_EQ(answered(std::string(head) + "\r\n" + most + ' '), "the answer is too long");
    for (const char* const length : {"65537", "3000000000", "1000000000000000000"}) {
        EXPECT_EQ(answered(std::string(head) + "Content-Length: " + length + "\r\n\r\nabc"),
                  "the connection ended in an answer");
    }
}

TEST(ListenerConnection, SaysWhenAnAnswerIsCutOff) {
    for (const char* const cut :
         {"", "HTTP/1.1 200", "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nabc"}) {
        EXPECT_EQ(answered(cut), "the connection ended in an answer") << cut;
    }
}

TEST(ListenerConnection, KeepsTheConnectionUntilTheListenerEndsIt) {
    std::atomic<int> count = 0;
    ScriptedServer server([&count](const std::string&, Stream& client) {
        const bool isLast = ++count % 3 == 0;
        send(client, answerWith(taken, isLast ? "Connection: close\r\n" : ""));
        return !isLast;
    });
    ListenerConnection connection = connectionTo(server);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(connection.post("<CIM/>"), std::nullopt);
    EXPECT_EQ(server.connections(), 2U);
}

TEST(ListenerConnection, SendsAgainWhatAKeptConnectionWasClosedUnder) {
    std::atomic<int> count = 0;
    ScriptedServer server([&count](const std::string&, Stream& client) {
        if (++count == 2) return false;  // like one that closed before the request came
        send(client, answerWith(taken));
        return true;
    });
    ListenerConnection connection = connectionTo(server);
    EXPECT_EQ(connection.post("<a/>"), std::nullopt);
    EXPECT_EQ(connection.post("<b/>"), std::nullopt);
    EXPECT_EQ(server.connections(), 2U);
    EXPECT_EQ(server.requests().size(), 3U);
    EXPECT_TRUE(server.requests().back().ends_with("<b/>"));
}

TEST(ListenerConnection, SendsNothingTwiceThatTheListenerAnswered) {
    std::atomic<int> count = 0;
    ScriptedServer server([&count](const std::string&, Stream& client) {
        if (++count == 1) {
            send(client, answerWith(taken));
            return true;
        }
        send(client, "HTTP/1.1 500 No\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
        return false;
    });
    ListenerConnection connection = connectionTo(server);
    EXPECT_EQ(connection.post("<a/>"), std::nullopt);
    EXPECT_EQ(connection.post("<b/>"), "the listener answered 500");
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST(ListenerConnection, WaitsNoLongerThanAnAttemptMayTake) {
    ScriptedServer server([](const std::string&, Stream& client) {
        std::array<char, 1> byte;
        return client.receive(byte, Clock::now() + std::chrono::minutes(1)) > 0;
    });
    EXPECT_THAT(connectionTo(server, std::chrono::milliseconds(50)).post("<CIM/>"),
                Optional(HasSubstr("took too long")));
}

TEST(ListenerConnection, EndsAnAttemptThatIsAborted) {
    std::atomic<bool> isAsked = false;
    ScriptedServer server([&isAsked](const std::string&, Stream& client) {
        isAsked = true;
        std::array<char, 1> byte;
        return client.receive(byte, Clock::now() + std::chrono::minutes(1)) > 0;
    });
    ListenerConnection connection = connectionTo(server);
    std::thread ender([&] {
        while (!isAsked) std::this_thread::yield();
        connection.abort();
    });
    EXPECT_NE(connection.post("<CIM/>"), std::nullopt);
    ender.join();
    EXPECT_EQ(connection.post("<CIM/>"), "delivery ends");
}

}  // namespace
}  // namespace cimhost
