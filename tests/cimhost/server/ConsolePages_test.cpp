#include "cimhost/server/ConsolePages.h"

#include "cimhost/http/Gunzip.h"
#include "tests/cimhost/http/Gzip.h"
#include "tests/cimhost/http/MemoryStream.h"
#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/TestServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;

struct ConsolePagesTest : testing::Test {
    const std::string script = "let much = 1;\n" + std::string(100'000, ' ');
    const std::string packedPage = gzip("<p>hello</p>\n");
    const std::string packedScript = gzip(script);
    const ConsoleFile files[2] = {
        {"/", "text/html; charset=utf-8", "aa", packedPage},
        {"/console.js", "text/javascript; charset=utf-8", "bb", packedScript}};
    TestHandler events{[](const HttpRequest&, HttpReply& reply) { reply.write("data: {}\n\n"); }};
    ConsolePages pages{files, &events};
    HttpRequest request;
    ByteBudget openReplies{ByteBudget::Kind::other, 1};

    std::string ask(HttpHandler& handler, std::string_view target) {
        MemoryStream stream;
        SpoolStore store(1'000'000, 0);
        HttpReply reply(stream, store,
                        {.isForHead = request.method == "HEAD", .openReplies = &openReplies});
        request.target = target;
        handler.handle(request, reply);
        reply.finish();
        return stream.sent;
    }

    std::string get(std::string_view target, std::vector<HttpField> fields = {}) {
        request.method = "GET";
        request.fields = std::move(fields);
        return ask(pages, target);
    }
};

TEST_F(ConsolePagesTest, ShowThePageAsItIs) {
    const std::string reply = get("/");
    EXPECT_EQ(statusOf(reply), 200);
    EXPECT_EQ(headerOf(reply, "Content-Type"), "text/html; charset=utf-8");
    EXPECT_EQ(headerOf(reply, "Content-Encoding"), "");
    EXPECT_EQ(bodyOf(reply), "<p>hello</p>\n");
    EXPECT_EQ(bodyOf(get("/console.js")), script);
    EXPECT_EQ(bodyOf(get("/?from=elsewhere")), "<p>hello</p>\n");
}

TEST_F(ConsolePagesTest, ShowItPackedToWhoTakesItSo) {
    const std::string reply = get("/console.js", {{"Accept-Encoding", "gzip, br"}});
    EXPECT_EQ(headerOf(reply, "Content-Encoding"), "gzip");
    EXPECT_EQ(headerOf(reply, "Content-Length"), std::to_string(packedScript.size()));
    EXPECT_EQ(bodyOf(reply), packedScript);
    EXPECT_EQ(headerOf(get("/", {{"Accept-Encoding", "gzip;q=0"}}), "Content-Encoding"), "");
}

TEST_F(ConsolePagesTest, ProtectThePageAndAllElse) {
    for (const std::string_view target : {"/", "/console.js", "/nothing", "/events"}) {
        const std::string reply = get(target);
        const std::string policy = headerOf(reply, "Content-Security-Policy");
        EXPECT_THAT(policy, testing::StartsWith("default-src 'none'; script-src 'self'; "));
        EXPECT_THAT(policy, HasSubstr("frame-ancestors 'none'"));
        EXPECT_THAT(policy, Not(HasSubstr("unsafe")));
        EXPECT_EQ(headerOf(reply, "X-Content-Type-Options"), "nosniff");
        EXPECT_EQ(headerOf(reply, "X-Frame-Options"), "DENY");
        EXPECT_EQ(headerOf(reply, "Referrer-Policy"), "no-referrer");
        EXPECT_EQ(headerOf(reply, "Cross-Origin-Opener-Policy"), "same-origin");
        EXPECT_EQ(headerOf(reply, "Cross-Origin-Resource-Policy"), "same-origin");
        EXPECT_THAT(reply, Not(HasSubstr("Access-Control")));
    }
}

TEST_F(ConsolePagesTest, HaveATagForEachFileAndForm) {
    std::set<std::string> tags;
    for (const std::string_view target : {"/", "/console.js"}) {
        for (const std::string_view coding : {"identity", "gzip"}) {
            const std::string reply = get(target, {{"Accept-Encoding", coding}});
            EXPECT_EQ(headerOf(reply, "Cache-Control"), "no-cache");
            EXPECT_EQ(headerOf(reply, "Vary"), "Accept-Encoding");
            tags.insert(headerOf(reply, "ETag"));
        }
    }
    EXPECT_EQ(tags, (std::set<std::string>{"\"aa\"", "\"aa-gzip\"", "\"bb\"", "\"bb-gzip\""}));
}

TEST_F(ConsolePagesTest, SendNothingAgainThatTheClientHas) {
    const std::string reply = get("/", {{"If-None-Match", R"("old", W/"aa")"}});
    EXPECT_EQ(statusOf(reply), 304);
    EXPECT_EQ(headerOf(reply, "ETag"), "\"aa\"");
    EXPECT_EQ(headerOf(reply, "Cache-Control"), "no-cache");
    EXPECT_EQ(headerOf(reply, "Content-Length"), "");
    EXPECT_EQ(bodyOf(reply), "");
    EXPECT_EQ(statusOf(get("/", {{"If-None-Match", "*"}})), 304);
    EXPECT_EQ(statusOf(get("/", {{"If-None-Match", R"("bb")"}})), 200);
    EXPECT_EQ(statusOf(get("/", {{"If-None-Match", R"("aa")"}, {"Accept-Encoding", "gzip"}})), 200)
        << "what it has are other bytes";
}

TEST_F(ConsolePagesTest, AnswerHeadWithTheHeadOfGet) {
    const std::string whole = get("/");
    request.method = "HEAD";
    const std::string part = ask(pages, "/");
    EXPECT_EQ(part.substr(0, 17), whole.substr(0, 17));
    EXPECT_EQ(headerOf(part, "Content-Length"), "13");
    EXPECT_EQ(headerOf(part, "ETag"), headerOf(whole, "ETag"));
    EXPECT_EQ(bodyOf(part), "");
}

TEST_F(ConsolePagesTest, SayWhatIsNotThere) {
    for (const std::string_view target : {"/nothing", "/console.js/", "/../etc/passwd", "*", ""}) {
        const std::string reply = get(target);
        EXPECT_EQ(statusOf(reply), 404) << target;
        EXPECT_EQ(headerOf(reply, "Content-Type"), "text/plain; charset=utf-8");
        EXPECT_THAT(bodyOf(reply), HasSubstr("The console is at /"));
    }
}

TEST_F(ConsolePagesTest, SayHowToGetThePageWhereItWasNotBuilt) {
    ConsolePages without({});
    request.method = "GET";
    const std::string reply = ask(without, "/");
    EXPECT_EQ(statusOf(reply), 404);
    EXPECT_THAT(bodyOf(reply), HasSubstr("install nodejs and npm and build again"));
    EXPECT_EQ(statusOf(ask(without, "/events")), 404);
}

TEST_F(ConsolePagesTest, HandTheEventsOverWhileThereIsRoom) {
    EXPECT_THAT(get("/events"), HasSubstr("data: {}"));
    request.method = "HEAD";
    EXPECT_EQ(statusOf(ask(pages, "/events")), 405);
    ByteBudget::Share taken(openReplies);
    ASSERT_TRUE(taken.grow(1));
    const std::string reply = get("/events");
    EXPECT_EQ(statusOf(reply), 503);
    EXPECT_EQ(headerOf(reply, "Retry-After"), "5");
    EXPECT_EQ(events.calls, 1);
}

/// What was built into this program, if anything was.
TEST(BuiltConsole, HasThePageAndWhatItLoads) {
    const auto files = builtConsole();
    if (files.empty()) {
        GTEST_SKIP() << "built without the console";
    }
    ASSERT_EQ(files.size(), 3U);
    const std::string page = gunzip(files[0].gzip);
    EXPECT_EQ(files[0].path, "/");
    EXPECT_THAT(page, HasSubstr("<!doctype html>"));
    std::size_t size = 0;
    for (const ConsoleFile& file : files) {
        EXPECT_FALSE(gunzip(file.gzip).empty()) << file.path;
        EXPECT_EQ(file.tag.size(), 64U);
        size += file.gzip.size();
    }
    EXPECT_LE(size, 350U * 1024U);
    for (const std::string_view name : {"console.js", "console.css"}) {
        EXPECT_THAT(page, HasSubstr(name));
    }
}

}  // namespace
}  // namespace cimhost
