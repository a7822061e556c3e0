#include "cimhost/http/AccessLog.h"

#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/TestServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace cimhost {
namespace {

using testing::HasSubstr;

AccessRecord record() {
    return {"127.0.0.1:1", "fred", "GetInstance", "root/cimv2",
            "6",           200,    1234,          std::chrono::microseconds(98)};
}

std::string format(const AccessRecord& value) {
    return formatAccess(
        value, std::chrono::system_clock::from_time_t(1714564800) + std::chrono::milliseconds(7));
}

TEST(AccessLog, WritesOneLineWithEveryField) {
    EXPECT_EQ(format(record()),
              "2024-05-01T12:00:00.007Z 127.0.0.1:1 fred GetInstance root/cimv2 200 6 1234B 98us");
}

TEST(AccessLog, WritesADashForWhatIsEmpty) {
    EXPECT_EQ(format({}), "2024-05-01T12:00:00.007Z - - - - 0 - 0B 0us");
}

TEST(AccessLog, LetsNoFieldForgeAnotherOrALine) {
    AccessRecord forged = record();
    forged.operation = "a b\nc\"d\\e%f\x7F\xC3";
    EXPECT_THAT(format(forged), HasSubstr(" a%20b%0Ac%22d%5Ce%f%7F%C3 "));
}

TEST(AccessLog, CutsLongFields) {
    AccessRecord longOne = record();
    const std::string object(1000, 'x');
    longOne.object = object;
    EXPECT_THAT(format(longOne), HasSubstr(" " + std::string(512, 'x') + "... "));
}

TEST(AccessLog, AppendsWholeLinesFromManyThreads) {
    const TemporaryFolder folder;
    folder.write("log", "before\n");
    {
        AccessLog log(folder / "log");
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&log] {
                for (int j = 0; j < 100; ++j) log.write(record());
            });
        }
        for (std::thread& thread : threads) thread.join();
    }
    const std::string text = folder.read("log");
    EXPECT_THAT(text, testing::StartsWith("before\n"));
    std::istringstream lines(text);
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with(" 127.0.0.1:1 fred GetInstance root/cimv2 200 6 1234B 98us")) ++count;
    }
    EXPECT_EQ(count, 400);
}

TEST(AccessLog, NamesAFileThatCannotBeOpened) {
    try {
        AccessLog log("/nowhere/log");
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("/nowhere/log"));
    }
}

TEST(AccessLog, IsNotNeededByAHandlerThatWantsToKnow) {
    std::atomic<int> told = 0;
    TestServer server([&told](const HttpRequest& request, HttpReply& reply) {
        reply.notes().atEnd = [&told, size = request.body.size()](const AccessRecord& record) {
            EXPECT_EQ(record.status, size == 1 ? 200 : 500);
            EXPECT_THAT(record.peer, testing::StartsWith("127.0.0.1:"));
            EXPECT_EQ(record.outcome, size == 1 ? "6" : "broken");
            EXPECT_GT(record.bytes, size);
            ++told;
        };
        if (request.body.size() > 1) throw std::runtime_error("broken");
        reply.notes().outcome = "6";
        reply.write(request.body);
    });
    RawClient client(server.port());
    client.send(post("x") + post("xx"));
    EXPECT_NE(client.readAll(), "");
    ASSERT_TRUE(server.awaitConnections(0));
    EXPECT_EQ(told, 2);
}

TEST(AccessLog, TellsOfEveryRequestRefusedOnesToo) {
    const TemporaryFolder folder;
    AccessLog log(folder / "log");
    TestServer server(
        [](const HttpRequest& request, HttpReply& reply) {
            if (!request.body.empty()) reply.notes() = {"GetClass", "root/x", "5"};
            reply.write("12345");
        },
        {}, nullptr, nullptr, &log);
    RawClient client(server.port());
    client.send(post("x") + post("") + "GET /a%0D HTTP/1.1\r\nHost: a\r\n\r\n" + "bad\r\n");
    EXPECT_NE(client.readAll(), "");
    ASSERT_TRUE(server.awaitConnections(0));
    const std::string text = folder.read("log");
    EXPECT_THAT(text, HasSubstr(" - GetClass root/x 200 5 "));
    EXPECT_THAT(text, HasSubstr(" - POST /cimom 200 - "));
    EXPECT_THAT(text, HasSubstr(" - GET /a%0D 405 - "));
    EXPECT_THAT(text, HasSubstr(" - - - 400 - "));
    EXPECT_THAT(text, HasSubstr("Z 127.0.0.1:"));
}

}  // namespace
}  // namespace cimhost
