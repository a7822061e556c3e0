#include "cimhost/server/CimXmlAdapter.h"

#include "cimhost/http/HttpServer.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/ConsoleLog.h"
#include "cimhost/server/ObjectManager.h"
#include "cimhost/server/events/RequestEvent.h"
#include "tests/cimhost/http/MemoryStream.h"
#include "tests/cimhost/http/RawClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

struct CimXmlHttpReplyTest : testing::Test {
    MemoryStream stream;
    SpoolStore store{0, 0};
    HttpReply http{stream, store, {}};
    CimXmlHttpReply reply{http};
};

TEST_F(CimXmlHttpReplyTest, HasTheHeadersOfAResponse) {
    reply.write("<CIM/>");
    http.finish();
    EXPECT_EQ(headerOf(stream.sent, "Content-Type"), "application/xml; charset=\"utf-8\"");
    EXPECT_EQ(headerOf(stream.sent, "CIMOperation"), "MethodResponse");
    EXPECT_EQ(headerOf(stream.sent, "Content-Length"), "6");
    EXPECT_EQ(bodyOf(stream.sent), "<CIM/>");
}

TEST_F(CimXmlHttpReplyTest, HasThemOnceAfterARestart) {
    reply.write("dropped");
    EXPECT_TRUE(reply.restart());
    reply.write("kept");
    http.finish();
    EXPECT_EQ(bodyOf(stream.sent), "kept");
    EXPECT_EQ(stream.sent.find("CIMOperation"), stream.sent.rfind("CIMOperation"));
    EXPECT_NE(stream.sent.find("CIMOperation"), std::string::npos);
}

TEST_F(CimXmlHttpReplyTest, SaysWhyARequestIsNone) {
    reply.refuse(400, "request-not-valid");
    http.finish();
    EXPECT_EQ(statusOf(stream.sent), 400);
    EXPECT_EQ(headerOf(stream.sent, "CIMError"), "request-not-valid");
    EXPECT_EQ(headerOf(stream.sent, "Content-Length"), "0");
    EXPECT_EQ(headerOf(stream.sent, "CIMOperation"), "");
    EXPECT_EQ(http.notes().outcome, "request-not-valid");
}

TEST_F(CimXmlHttpReplyTest, SaysNothingAboutNothing) {
    reply.refuse(400, "");
    http.finish();
    EXPECT_EQ(stream.sent.find("CIMError"), std::string::npos);
}

TEST_F(CimXmlHttpReplyTest, TellsWhatIsServedToWhoSendsNoCim) {
    reply.refuse(400, "");
    http.finish();
    EXPECT_EQ(headerOf(stream.sent, "Content-Type"), "text/plain; charset=utf-8");
    EXPECT_THAT(bodyOf(stream.sent), testing::StartsWith("This is cimhost, "));
    EXPECT_THAT(bodyOf(stream.sent), EndsWith("docs/cimhost.md.\n"));
}

TEST_F(CimXmlHttpReplyTest, EndsAReplyThatFailsHalfWayWithTrailers) {
    reply.write(std::string(70'000, 'x'));
    EXPECT_FALSE(reply.restart());
    reply.fail(6, "100% gone\r\nfor \xC3\xBC");
    http.finish();
    EXPECT_EQ(headerOf(stream.sent, "Trailer"),
              "CIMError, CIMStatusCode, CIMStatusCodeDescription");
    EXPECT_THAT(stream.sent,
                EndsWith("\r\n0\r\nCIMStatusCode: 6\r\n"
                         "CIMStatusCodeDescription: 100%25 gone%0D%0Afor %C3%BC\r\n\r\n"));
}

TEST_F(CimXmlHttpReplyTest, StartsAnewWhatAllWaitsStill) {
    SpoolStore roomy{200'000, 0};
    HttpReply waiting{stream, roomy, {}};
    CimXmlHttpReply fresh{waiting};
    stream.takesAtOnce = 0;
    fresh.write(std::string(150'000, 'x'));
    EXPECT_TRUE(fresh.restart());
    fresh.write("<ERROR/>");
    waiting.finish();
    EXPECT_EQ(bodyOf(stream.sent), "<ERROR/>");
    EXPECT_EQ(headerOf(stream.sent, "CIMOperation"), "MethodResponse");
}

TEST_F(CimXmlHttpReplyTest, SaysAsACimErrorThatNoMoreOfAReplyCanWait) {
    const auto failureOf = [this](SpoolStore& small) {
        HttpReply waiting{stream, small, {}};
        CimXmlHttpReply slow{waiting};
        stream.takesAtOnce = 10;
        try {
            slow.write(std::string(150'000, 'x'));
        } catch (const CimError& error) {
            return std::to_string(static_cast<int>(error.code())) + " " + error.what();
        }
        return std::string();
    };
    EXPECT_EQ(failureOf(store),
              "27 the client reads too slowly, and no more of the reply can wait for it");
    SpoolStore broken{0, 1'000'000, "/nowhere"};
    EXPECT_EQ(failureOf(broken),
              "1 the client reads too slowly, and the reply cannot wait for it: cannot make a "
              "temporary file in /nowhere: No such file or directory");
}

TEST_F(CimXmlHttpReplyTest, TellsTheLogHowAnOperationFailed) {
    reply.noteFailure(6);
    EXPECT_EQ(http.notes().outcome, "6");
}

constexpr std::string_view enumerateClassNames =
    R"(<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">)"
    R"(<MESSAGE ID="77" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="EnumerateClassNames">)"
    R"(<LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="none"/></LOCALNAMESPACEPATH>)"
    R"(<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="TST_&lt;Fan"/></IPARAMVALUE>)"
    R"(</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";

struct CimXmlAdapterTest : testing::Test {
    ConsoleLog log{BrokerLog::Level::error};
    Repository repository;
    ObjectManager manager{repository, {}, {}, log};
    Broker broker{repository, log, fillUpCalls};
    ModuleHost modules{broker, {}, {}};
    Operations operations{broker, modules};
    MemoryStream stream;
    SpoolStore store{0, 0};
    HttpReply reply{stream, store, {}};
};

TEST_F(CimXmlAdapterTest, HandsHeadersAndBodyOverAndTheReplyBack) {
    HttpRequest request;
    request.fields = {{"Content-Type", "application/xml"},
                      {"CIMOperation", "MethodCall"},
                      {"CIMMethod", "EnumerateClassNames"},
                      {"CIMObject", "root%2Fnone"}};
    request.body =
        R"(<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">)"
        R"(<MESSAGE ID="77" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="EnumerateClassNames">)"
        R"(<LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="none"/></LOCALNAMESPACEPATH>)"
        R"(</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";
    manager.httpHandler().handle(request, reply);
    reply.finish();
    EXPECT_EQ(statusOf(stream.sent), 200);
    EXPECT_THAT(bodyOf(stream.sent), HasSubstr("ID=\"77\""));
    EXPECT_THAT(bodyOf(stream.sent), HasSubstr("CODE=\"3\"")) << "there is no such namespace";
    EXPECT_EQ(reply.notes().operation, "EnumerateClassNames");
    EXPECT_EQ(reply.notes().object, "root%2Fnone");
    EXPECT_EQ(reply.notes().outcome, "3");
}

TEST_F(CimXmlAdapterTest, RefusesWhatIsNoXml) {
    HttpRequest request;
    request.fields = {{"Content-Type", "application/xml"},
                      {"CIMOperation", "MethodCall"},
                      {"CIMMethod", "EnumerateClassNames"},
                      {"CIMObject", "root"}};
    request.body = "<CIM>";
    manager.httpHandler().handle(request, reply);
    reply.finish();
    EXPECT_EQ(statusOf(stream.sent), 400);
    EXPECT_EQ(headerOf(stream.sent, "CIMError"), "request-not-well-formed");
}

TEST_F(CimXmlAdapterTest, TellsWhoLooksOfEachRequestThatHasEnded) {
    EventFeed feed;
    const CimXmlHandler handler(operations, repository);
    CimXmlAdapter adapter(handler, &feed);
    const HttpLimits limits;
    HttpServer server(ListenSocket("127.0.0.1", 0), {adapter, limits});
    server.start();
    RawClient client(server.listener().port());
    const std::string request =
        post(enumerateClassNames,
             "Content-Type: application/xml\r\nCIMOperation: MethodCall\r\n"
             "CIMMethod: EnumerateClassNames\r\nCIMObject: root%2Fnone\r\n");
    client.send(request);
    EXPECT_EQ(statusOf(client.readReply()), 200);
    EventFeed::Viewer viewer(feed);
    client.send(request);
    EXPECT_EQ(statusOf(client.readReply()), 200);
    const auto events = viewer.take(Clock::now() + std::chrono::seconds(60)).events;
    ASSERT_EQ(events.size(), 1U);
    EXPECT_THAT(*events.front(),
                testing::MatchesRegex(
                    "event: request\ndata: .\"number\":2,\"time\":\"[0-9T:.-]+Z\","
                    "\"peer\":\"127.0.0.1:[0-9]+\",\"user\":\"\",\"operation\":"
                    "\"EnumerateClassNames\",\"object\":\"root/none\",\"className\":\"TST_<Fan\","
                    "\"providers\":..,\"status\":200,\"outcome\":\"3\",\"bytes\":[0-9]+,"
                    "\"micros\":[0-9]+.\n\n"));
}

TEST(RequestEvent, NamesTheProvidersThatWereAsked) {
    EventFeed feed;
    EventFeed::Viewer viewer(feed);
    tell(feed, {1, "TST_Fan", {"FanProvider", "a\"b"}}, {});
    EXPECT_THAT(*viewer.take({}).events.at(0),
                HasSubstr(R"("providers":["FanProvider","a\"b"],"status":0,)"));
}

}  // namespace
}  // namespace cimhost
