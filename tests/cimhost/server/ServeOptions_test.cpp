#include "cimhost/server/ServeOptions.h"

#include "cimhost/server/Command.h"
#include "tests/cimhost/server/CommandLine.h"
#include "tests/support/Thrown.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using std::chrono::milliseconds;

struct ServeOptionsTest : testing::Test {
    ServeOptions parse(const std::vector<std::string>& words) {
        CommandLine<ServeOptions> line;
        return line.parse(words);
    }
    std::string exposureOf(const std::vector<std::string>& words) {
        return refusalOf<UsageError>([&] { parse(words).checkExposure(); });
    }
};

TEST_F(ServeOptionsTest, ServesThisMachineByDefault) {
    const ServeOptions options = parse({});
    EXPECT_EQ(options.address, "127.0.0.1");
    EXPECT_EQ(options.port, 5988);
    EXPECT_EQ(options.providerFolders.size(), 1U);
    EXPECT_FALSE(options.usesTls());
    EXPECT_FALSE(options.maximumSeconds);
}

TEST_F(ServeOptionsTest, TakesNamesThatItIsReachedBy) {
    EXPECT_THAT(parse({"--host-name", "cim.example", "--host-name", "box_2"}).hostNames,
                testing::ElementsAre("cim.example", "box_2"));
    for (const std::string name : {"", "http://cim.example", "cim.example:5988", "a b", "*"}) {
        EXPECT_THROW(parse({"--host-name", name}), std::exception) << name;
    }
}

TEST_F(ServeOptionsTest, HasTheDocumentedLimits) {
    const HttpLimits limits = parse({}).limits;
    EXPECT_EQ(limits.lineBytes, 8192U);
    EXPECT_EQ(limits.headBytes, 65536U);
    EXPECT_EQ(limits.fieldCount, 100U);
    EXPECT_EQ(limits.bodyBytes, 10485760U);
    EXPECT_EQ(limits.connections, 128U);
    EXPECT_EQ(limits.openReplies, 16U);
    EXPECT_EQ(limits.bodyMemoryBytes, 67108864U);
    EXPECT_EQ(limits.spoolMemoryBytes, 33554432U);
    EXPECT_EQ(limits.spoolDiskBytes, 4294967296U);
    EXPECT_EQ(limits.idleTime, milliseconds(30'000));
    EXPECT_EQ(limits.requestTime, milliseconds(10'000));
}

TEST_F(ServeOptionsTest, DeliversAsTheStandardSuggests) {
    const IndicationSettings settings = parse({}).indications;
    EXPECT_EQ(settings.delivery.manner.attempts, 3U);
    EXPECT_EQ(settings.delivery.manner.interval, std::chrono::seconds(20));
    EXPECT_FALSE(settings.stateFile);
}

TEST_F(ServeOptionsTest, TakesTheMannerOfDelivery) {
    const IndicationSettings settings =
        parse({"--state", "s", "--delivery-attempts", "0", "--delivery-interval", "5",
               "--delivery-queue", "7", "--delivery-time", "1.5"})
            .indications;
    EXPECT_EQ(settings.stateFile, "s");
    EXPECT_EQ(settings.delivery.manner.attempts, 0U);
    EXPECT_EQ(settings.delivery.manner.interval, std::chrono::seconds(5));
    EXPECT_EQ(settings.delivery.queueItems, 7U);
    EXPECT_EQ(settings.delivery.attemptTime, milliseconds(1500));
}

TEST_F(ServeOptionsTest, TakesLimits) {
    const HttpLimits limits =
        parse({"--max-connections", "3", "--max-body", "1000", "--idle-time", "0.5",
               "--request-time", "2", "--reply-time", "1.25", "--body-memory", "8",
               "--spool-memory", "7", "--spool-disk", "0"})
            .limits;
    EXPECT_EQ(limits.connections, 3U);
    EXPECT_EQ(limits.bodyBytes, 1000U);
    EXPECT_EQ(limits.idleTime, milliseconds(500));
    EXPECT_EQ(limits.requestTime, milliseconds(2000));
    EXPECT_EQ(limits.replyTime, milliseconds(1250));
    EXPECT_EQ(limits.bodyMemoryBytes, 8U);
    EXPECT_EQ(limits.spoolMemoryBytes, 7U);
    EXPECT_EQ(limits.spoolDiskBytes, 0U);
}

TEST_F(ServeOptionsTest, RefusesWhatMakesNoSense) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"--port", "65536"},
                                               {"--port", "-1"},
                                               {"--port", "x"},
                                               {"--max-connections", "0"},
                                               {"--spool-memory", "-1"},
                                               {"--spool-disk", "much"},
                                               {"--idle-time", "0"},
                                               {"--idle-time", "-1"},
                                               {"--log-level", "loud"},
                                               {"--max-seconds", "-1"},
                                               {"--tls-cert", "c"},
                                               {"--tls-key", "k"},
                                               {"--unheard-of"},
                                               {"stray"}}) {
        EXPECT_THROW(parse(words), CLI::ParseError) << words.front() << " " << words.back();
    }
}

TEST_F(ServeOptionsTest, ReplacesTheDefaultFolderOfModules) {
    EXPECT_THAT(parse({"--provider-dir", "a", "--provider-dir", "b"}).providerFolders,
                testing::ElementsAre("a", "b"));
}

TEST_F(ServeOptionsTest, KnowsLogLevelsByName) {
    EXPECT_EQ(parse({"--log-level", "Debug"}).logLevel, BrokerLog::Level::debug);
    EXPECT_EQ(parse({"--log-level", "error"}).logLevel, BrokerLog::Level::error);
    EXPECT_EQ(parse({}).logLevel, BrokerLog::Level::information);
}

TEST_F(ServeOptionsTest, LetsOthersInOnlyWithTlsAndPasswords) {
    const std::vector<std::string> tls = {"--tls-cert", "c", "--tls-key", "k"};
    const std::vector<std::string> passwords = {"--password-file", "p"};
    for (const std::string address : {"0.0.0.0", "::", "10.0.0.1"}) {
        std::vector<std::string> words = {"--listen", address};
        EXPECT_THAT(exposureOf(words), testing::HasSubstr("--listen " + address));
        words.insert(words.end(), tls.begin(), tls.end());
        EXPECT_NE(exposureOf(words), "");
        words.insert(words.end(), passwords.begin(), passwords.end());
        EXPECT_EQ(exposureOf(words), "");
        EXPECT_NE(exposureOf({"--listen", address, "--password-file", "p"}), "");
    }
    EXPECT_EQ(exposureOf({"--listen", "127.0.0.2"}), "");
    EXPECT_EQ(exposureOf({"--listen", "::1"}), "");
}

}  // namespace
}  // namespace cimhost
