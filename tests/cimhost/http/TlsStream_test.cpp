#include "cimhost/http/TlsStream.h"

#include "cimhost/http/HostNames.h"
#include "tests/cimhost/http/RawClient.h"
#include "tests/cimhost/http/TestServer.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace cimhost {
namespace {

using testing::HasSubstr;

struct Outcome {
    int status;
    std::string output;
};

Outcome run(const std::string& command) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe) throw std::runtime_error("popen");
    Outcome outcome{0, {}};
    for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) {
        outcome.output += static_cast<char>(byte);
    }
    outcome.status = pclose(pipe);
    return outcome;
}

struct TlsStreamTest : testing::Test {
    TemporaryFolder folder;
    std::string certificate = folder / "cert.pem";
    std::string key = folder / "key.pem";

    TlsStreamTest() {
        const Outcome made =
            run("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
                "-subj /CN=localhost -addext subjectAltName=DNS:localhost,IP:127.0.0.1 -keyout " +
                key + " -out " + certificate);
        if (made.status != 0) throw std::runtime_error(made.output);
    }

    std::string curl(std::uint16_t port, const std::string& options) const {
        return run("curl -sS --max-time 20 --cacert " + certificate + " " + options +
                   " https://localhost:" + std::to_string(port) + "/cimom")
            .output;
    }
    std::string refusalOf(const std::string& certificateFile, const std::string& keyFile) {
        return cimhost::refusalOf<std::runtime_error>(
            [&] { const TlsContext context(certificateFile, keyFile); });
    }
};

TEST_F(TlsStreamTest, ServesAClientThatChecksTheCertificate) {
    const TlsContext context(certificate, key);
    TestServer server({}, {}, nullptr, &context);
    EXPECT_EQ(curl(server.port(), "--data hello"), "hello");
    EXPECT_EQ(curl(server.port(), "--tlsv1.3 --data hello"), "hello");
    EXPECT_EQ(curl(server.port(), "--tls-max 1.2 --data hello"), "hello");
}

TEST_F(TlsStreamTest, ServesRequestsAndRepliesOfManyRecords) {
    const TlsContext context(certificate, key);
    TestServer server(
        [](const HttpRequest& request, HttpReply& reply) {
            for (int i = 0; i < 3; ++i) reply.write(request.body);
        },
        {}, nullptr, &context);
    const std::string body(300'000, 'b');
    folder.write("body", body);
    EXPECT_EQ(curl(server.port(), "--data-binary @" + (folder / "body").string()),
              body + body + body);
}

TEST_F(TlsStreamTest, KeepsAConnectionForManyRequests) {
    const TlsContext context(certificate, key);
    TestServer server({}, {}, nullptr, &context);
    const std::string url = " https://localhost:" + std::to_string(server.port()) + "/";
    EXPECT_THAT(curl(server.port(), "-v --data one" + url + "1" + url + "2"),
                HasSubstr("Re-using existing connection"));
    EXPECT_EQ(server.handler.calls, 3);
}

TEST_F(TlsStreamTest, KeepsNoHandlerWaitingForAClientThatDoesNotRead) {
    const TlsContext context(certificate, key);
    LongReply reply;
    HttpLimits limits;
    limits.spoolMemoryBytes = 1'000'000;
    TestServer server(std::ref(reply), limits, nullptr, &context);
    const std::filesystem::path request =
        folder.write("request", post("", "Connection: close\r\n"));
    const std::string command =
        "openssl s_client -quiet -connect 127.0.0.1:" + std::to_string(server.port()) +
        " 2>/dev/null <" + request.string();
    FILE* const pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    EXPECT_TRUE(await([&] { return reply.written == 1; }));
    std::string received;  // only now does anybody read it
    std::array<char, 65536> bytes;
    for (std::size_t count = 1; count > 0;) {
        count = std::fread(bytes.data(), 1, bytes.size(), pipe);
        received.append(bytes.data(), count);
    }
    pclose(pipe);
    EXPECT_TRUE(bodyOf(received) == LongReply::text()) << received.substr(0, 500);
}

TEST_F(TlsStreamTest, KnowsWhomItsCertificateIsFor) {
    const Outcome made =
        run("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
            "-subj /CN=ignored.example -addext "
            "subjectAltName=DNS:cim.example,DNS:*.lab.example,IP:10.0.0.1 -keyout " +
            key + " -out " + certificate);
    ASSERT_EQ(made.status, 0) << made.output;
    const TlsContext context(certificate, key);
    const HostNames names({.certificate = &context, .machine = ""});
    for (const std::string_view host : {"cim.example", "CIM.Example:5989", "a.lab.example"}) {
        EXPECT_TRUE(names.contain(host)) << host;
    }
    for (const std::string_view host :
         {"evil.example", "cim.example.evil.example", "lab.example", "a.b.lab.example",
          "ignored.example", ".example", ".lab.example"}) {
        EXPECT_FALSE(names.contain(host)) << host;
    }
}

TEST_F(TlsStreamTest, TakesItsOwnPageForOneOfHttps) {
    const TlsContext context(certificate, key);
    TestServer server({}, {}, nullptr, &context);
    const std::string host = "localhost:" + std::to_string(server.port());
    EXPECT_EQ(curl(server.port(), "--data hello -H 'Origin: https://" + host + "'"), "hello");
    EXPECT_THAT(curl(server.port(), "--data hello -H 'Origin: http://" + host + "'"),
                HasSubstr("another site"));
}

TEST_F(TlsStreamTest, KnowsThatTheClientOfAReplyThatStaysOpenIsGone) {
    const TlsContext context(certificate, key);
    OpenReply openReply;
    TestServer server(std::ref(openReply), {}, nullptr, &context);
    EXPECT_THAT(curl(server.port(), "-N -m 1 --data x"), HasSubstr("timed out"));
    EXPECT_TRUE(await([&] { return openReply.ended == 1; }));
}

TEST_F(TlsStreamTest, RefusesOldProtocols) {
    const TlsContext context(certificate, key);
    TestServer server({}, {}, nullptr, &context);
    const std::string words =
        curl(server.port(), "--tls-max 1.1 --ciphers DEFAULT@SECLEVEL=0 --data hello");
    EXPECT_THAT(words, HasSubstr("protocol version"));
    EXPECT_EQ(server.handler.calls, 0);
}

TEST_F(TlsStreamTest, EndsAConnectionThatSpeaksNoTlsOrNothing) {
    HttpLimits limits;
    limits.requestTime = std::chrono::milliseconds(50);
    const TlsContext context(certificate, key);
    TestServer server({}, limits, nullptr, &context);
    RawClient plain(server.port());
    plain.send(post("hello"));
    EXPECT_EQ(statusOf(plain.readAll()), 0);
    RawClient silent(server.port());
    EXPECT_TRUE(silent.isClosedByServer());
    RawClient gone(server.port());
    gone.send("\x16\x03\x01");
    gone.reset();
    EXPECT_TRUE(server.awaitConnections(0));
    EXPECT_EQ(server.handler.calls, 0);
}

TEST_F(TlsStreamTest, Answers503OverTlsToo) {
    HttpLimits limits;
    limits.connections = 1;
    limits.evictionTime = std::chrono::hours(1);
    const TlsContext context(certificate, key);
    TestServer server({}, limits, nullptr, &context);
    RawClient taken(server.port());
    ASSERT_TRUE(server.awaitConnections(1));
    EXPECT_THAT(curl(server.port(), "-i --data hello"), HasSubstr("HTTP/1.1 503 "));
}

TEST_F(TlsStreamTest, StopsInOrder) {
    const TlsContext context(certificate, key);
    TestServer server({}, {}, nullptr, &context);
    RawClient silent(server.port());
    ASSERT_TRUE(server.awaitConnections(1));
    EXPECT_TRUE(server.server.stop(std::chrono::seconds(10)));
}

TEST_F(TlsStreamTest, NamesTheFileThatCannotBeUsed) {
    EXPECT_THAT(refusalOf("/nowhere/cert", key),
                HasSubstr("certificate /nowhere/cert: No such file or directory"));
    EXPECT_THAT(refusalOf(certificate, "/nowhere/key"),
                HasSubstr("key /nowhere/key: No such file or directory"));
    EXPECT_THAT(refusalOf(key, certificate), HasSubstr("certificate"));
    EXPECT_EQ(refusalOf(certificate, key), "");
}

TEST_F(TlsStreamTest, RefusesAKeyOfAnotherCertificate) {
    const std::string other = folder / "other.pem";
    ASSERT_EQ(run("openssl genpkey -algorithm ed25519 -out " + other).status, 0);
    EXPECT_THAT(refusalOf(certificate, other), HasSubstr("key " + other));
}

TEST_F(TlsStreamTest, AsksNobodyForAPassphrase) {
    const std::string locked = folder / "locked.pem";
    ASSERT_EQ(
        run("openssl pkcs8 -topk8 -passout pass:secret -in " + key + " -out " + locked).status, 0);
    EXPECT_THAT(refusalOf(certificate, locked), HasSubstr("key " + locked));
}

}  // namespace
}  // namespace cimhost
