#include "common/LoggedProvider.h"

#include "tests/common/Construction.h"
#include "tests/common/Failures.h"
#include "tests/common/NarrowProviders.h"
#include "tests/common/ProviderOperations.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiProvider;
using PYL::LoggedProvider;

struct LoggedProviderBase {
    TestBroker host;
    JournalLog log;
    Journal& journal = *log.journal;
    CmpiBroker broker = host.broker();
    Request request{host, journal};

    ~LoggedProviderBase() { construction = {}; }

    std::unique_ptr<LoggedProvider> wrap(CmpiProvider* provider) {
        construction.product = provider;
        auto wrapped = std::make_unique<LoggedProvider>(broker, log.logger, makeProvider);
        journal.take();
        return wrapped;
    }
};

struct LoggedProviderTest : LoggedProviderBase, testing::Test {};

TEST_F(LoggedProviderTest, MakesOwnsAndDeletesTheInnerProvider) {
    construction.product = new InnerProvider(host, journal);
    {
        const LoggedProvider provider(broker, log.logger, makeProvider);
        EXPECT_EQ(construction.broker, &broker);
        EXPECT_EQ(construction.logger, &log.logger);
        EXPECT_EQ(journal.take(),
                  (Lines{"information: provider cxtor()", "information: in the factory",
                         "information: returned from provider cxtor()"}));
    }
    EXPECT_EQ(journal.take(), (Lines{"information: provider dxtor()", "inner deleted",
                                     "information: returned from provider dxtor()"}));
}

TEST_F(LoggedProviderTest, HandsTheRawContextToTheFactoryThatTakesOne) {
    construction.product = new InnerProvider(host, journal);
    {
        const LoggedProvider provider(broker, log.logger, makeProviderWithContext,
                                      request.context.toCMPI());
        EXPECT_EQ(construction.context, request.context.toCMPI());
        EXPECT_EQ(construction.broker, &broker);
        EXPECT_EQ(construction.logger, &log.logger);
        EXPECT_EQ(journal.take(),
                  (Lines{"information: provider cxtor()", "information: in the factory",
                         "information: returned from provider cxtor()"}));
    }
    EXPECT_EQ(journal.take(), (Lines{"information: provider dxtor()", "inner deleted",
                                     "information: returned from provider dxtor()"}));
}

TEST_F(LoggedProviderTest, KeepsItsOwnCopyOfTheLogger) {
    const auto other = std::make_shared<Journal>();
    construction.product = new InnerProvider(host, journal);
    Logger logger = log.logger;
    const auto provider = std::make_unique<LoggedProvider>(broker, logger, makeProvider);
    logger = Logger("other", other);
    journal.take();
    provider->enableIndications(request.context);
    EXPECT_EQ(journal.take().size(), 3U);
    EXPECT_EQ(other->take(), Lines{});
}

TEST_F(LoggedProviderTest, FailsToBeMadeWithWhatTheFactoryThrows) {
    for (const auto& failure : allFailures()) {
        construction.raise = failure.raise;
        Lines expected{"information: provider cxtor()", "information: in the factory"};
        if (std::string(failure.name) == "status 6 gone") {
            expected.push_back(
                "information: provider cxtor exception: CMPI_RC_ERR_NOT_FOUND (6): gone");
        }
        if (std::string(failure.name) == "detailed 1 broken 42") {
            expected.push_back(
                "information: provider cxtor exception: CMPI_RC_ERR_FAILED (1): broken");
        }
        EXPECT_EQ(outcomeOf([&] { LoggedProvider(broker, log.logger, makeProvider); }),
                  failure.name);
        EXPECT_EQ(journal.take(), expected);
        EXPECT_EQ(outcomeOf([&] {
                      LoggedProvider(broker, log.logger, makeProviderWithContext, nullptr);
                  }),
                  failure.name);
        EXPECT_EQ(journal.take(), expected);
    }
}

TEST_F(LoggedProviderTest, AnswersWithTheBrokerOfTheInnerProviderAndLogsNothing) {
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    EXPECT_EQ(provider->getBroker(), host.broker().toRawCMPI());
    for (const auto& failure : allFailures()) {
        inner->onCall = failure.raise;
        EXPECT_EQ(outcomeOf([&] { provider->getBroker(); }), failure.name);
    }
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(LoggedProviderTest, PutsTheAnswerToUnloadIntoAWord) {
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    struct {
        int answer;
        const char* word;
    } const rows[] = {{0, "okToUnload"}, {1, "doNotUnloadNow"}, {2, "neverUnload"}, {3, ""},
                      {-1, ""},          {1000000, ""}};
    for (const auto& row : rows) {
        inner->unloadAnswer = row.answer;
        EXPECT_EQ(provider->unloadOK(request.context), row.answer);
        EXPECT_EQ(journal.take(),
                  (Lines{"information: unloadOK()", "inner unloadOK",
                         std::string("information: returned from unloadOK, ") + row.word}));
    }
}

TEST_F(LoggedProviderTest, SaysWhetherTheObjectManagerEnds) {
    const auto provider = wrap(new InnerProvider(host, journal));
    provider->cleanup(request.context, false);
    EXPECT_EQ(journal.take(), (Lines{"information: cleanup(terminating=0)", "inner cleanup",
                                     "information: returned from cleanup()"}));
}

TEST_F(LoggedProviderTest, LivesWithoutAnInnerProvider) {
    const auto provider = wrap(nullptr);
    EXPECT_EQ(provider->getBroker(), nullptr);
    EXPECT_EQ(provider->unloadOK(request.context), 0);
    provider->cleanup(request.context, true);
    EXPECT_EQ(
        journal.take(),
        (Lines{"information: unloadOK()", "information: returned from unloadOK, okToUnload",
               "information: cleanup(terminating=1)", "information: returned from cleanup()"}));
}

TEST_F(LoggedProviderTest, CanBeStacked) {
    const auto outer = wrap(wrap(new InnerProvider(host, journal)).release());
    outer->enableIndications(request.context);
    EXPECT_EQ(journal.take(),
              (Lines{"information: enableIndications()", "information: enableIndications()",
                     "inner enableIndications", "information: returned from enableIndications()",
                     "information: returned from enableIndications()"}));
}

TEST_F(LoggedProviderTest, WritesTheInputArgumentsOfAMethodInOrder) {
    const auto provider = wrap(new InnerProvider(host, journal));
    request.arguments.addArg("Speed", 42U);
    request.arguments.addArg("Mode", "fast \"and\" loud");
    request.arguments.addArg("Nothing", CmpiCpp::CmpiValue::null(CMPI_string));
    provider->invokeMethod(request.context, request.path, "SetSpeed", request.arguments,
                           request.method);
    EXPECT_EQ(journal.take(),
              (Lines{std::string("information: invokeMethod(path=") + requestPath +
                         ", methodName=\"SetSpeed\", Speed=42, Mode=\"fast \\\"and\\\" loud\", "
                         "Nothing=NULL)",
                     std::string("inner invokeMethod ") + requestPath + " SetSpeed 3",
                     "information: returned from invokeMethod()"}));
}

TEST_F(LoggedProviderTest, ReadsPercentSignsOfAMethodCallAsConversionsWithoutArguments) {
    const auto provider = wrap(new InnerProvider(host, journal));
    request.arguments.addArg("Text", "100%% of %s, %d and %n; %*d %.99999999s %");
    provider->invokeMethod(request.context, request.path, "Print%s", request.arguments,
                           request.method);
    EXPECT_EQ(journal.take().front(),
              std::string("information: invokeMethod(path=") + requestPath +
                  ", methodName=\"Print%s\", Text=\"100% of %s, %d and ; %*d %.99999999s %\")");
}

TEST_F(LoggedProviderTest, PrintsPercentSignsOfOtherRequestsAsTheyAre) {
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    inner->onCall = [] { throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "%s%n%%"); };
    EXPECT_THROW(provider->authorizeFilter(request.context, nullptr, "%s%n%%",
                                           host.path("PYL_Thing", "%d%%"), "%n"),
                 CmpiCpp::CmpiStatus);
    const auto lines = journal.take();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0],
              "information: authorizeFilter(classname=\"%s%n%%\", "
              "path=//server-1/root/ktq:PYL_Thing.Id=\"%d%%\", user=%n)");
    EXPECT_EQ(lines[2], "information: authorizeFilter() exception: CMPI_RC_ERR_FAILED (1): %s%n%%");
}

TEST_F(LoggedProviderTest, LogsWhatAMethodDeliversAndPassesItOn) {
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    inner->onInvoke = [](CmpiCpp::CmpiMethodResult& result) {
        result.deliver("Old", 7U);
        result.deliver(0U);
    };
    provider->invokeMethod(request.context, request.path, "Reset", request.arguments,
                           request.method);
    auto lines = journal.take();
    lines.erase(lines.begin(), lines.begin() + 2);
    EXPECT_EQ(lines, (Lines{"information: deliver(Old=[uint32]7)", "delivered Old = uint32 7",
                            "information: deliver([uint32]0)", "delivered uint32 0",
                            "information: returned from invokeMethod()"}));
}

struct LoggedOperation : LoggedProviderBase, testing::TestWithParam<ProviderOperation> {
    const ProviderOperation& operation = GetParam();

    bool delivers() const { return operation.delivers != ProviderOperation::Delivers::nothing; }
    Lines entry() const { return {"information: " + operation.entry, "inner " + operation.inner}; }
    Lines delivery(int number) const {
        const std::string key = std::to_string(number);
        const std::string path = "//server-1/root/ktq:PYL_Thing.Id=\"" + key + "\"";
        const std::string delivered =
            operation.delivers == ProviderOperation::Delivers::paths
                ? path
                : "instance of PYL_Thing {Id = \"" + key + "\";} at " + path;
        return {"information: deliver(" + path + ")", "delivered " + delivered};
    }
};

void append(Lines& lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

TEST_P(LoggedOperation, LogsForwardsAndCounts) {
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    for (int count : {0, 1, 2, 11}) {
        if (!delivers() && count > 0) break;
        inner->deliveries = count;
        auto expected = entry();
        for (int i = 0; i < count; ++i) append(expected, delivery(i));
        expected.push_back("information: " + (delivers() ? "returned " + std::to_string(count) +
                                                               " object" + (count == 1 ? "" : "s") +
                                                               " from " + operation.name + "()"
                                                         : operation.returned));
        operation.run(*provider, request);
        EXPECT_EQ(journal.take(), expected);
    }
}

TEST_P(LoggedOperation, HandsOverTheCallersOwnContextAndPath) {
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    operation.run(*provider, request);
    EXPECT_EQ(inner->context.load(), &request.context);
    if (inner->path.load()) {
        EXPECT_EQ(inner->path.load(), &request.path);
    }
}

TEST_P(LoggedOperation, LogsAStatusAndPassesOnWhatWasThrownUnchanged) {
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    for (const auto& failure : allFailures()) {
        inner->onCall = failure.raise;
        auto expected = entry();
        if (std::string(failure.name) == "status 6 gone") {
            expected.push_back("information: " + operation.exception +
                               "CMPI_RC_ERR_NOT_FOUND (6): gone");
        }
        if (std::string(failure.name) == "detailed 1 broken 42") {
            expected.push_back("information: " + operation.exception +
                               "CMPI_RC_ERR_FAILED (1): broken");
        }
        EXPECT_EQ(outcomeOf([&] { operation.run(*provider, request); }), failure.name);
        EXPECT_EQ(journal.take(), expected);
    }
}

TEST_P(LoggedOperation, LetsWhatWasDeliveredBeforeAFailureStand) {
    if (!delivers()) return;
    auto* const inner = new InnerProvider(host, journal);
    const auto provider = wrap(inner);
    inner->deliveries = 3;
    for (int failing : {0, 1, 2}) {
        int deliveries = 0;
        const auto sink = [&] {
            if (deliveries++ == failing) throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_FAILED, "full");
        };
        request.paths.onDeliver = request.instances.onDeliver = sink;
        auto expected = entry();
        for (int i = 0; i < failing; ++i) append(expected, delivery(i));
        expected.push_back(delivery(failing).front());
        expected.push_back("information: " + operation.exception + "CMPI_RC_ERR_FAILED (1): full");
        EXPECT_EQ(outcomeOf([&] { operation.run(*provider, request); }), "status 1 full");
        EXPECT_EQ(journal.take(), expected);
    }
}

TEST_P(LoggedOperation, FailsWhenTheInnerProviderIsOfAnotherKindOrMissing) {
    if (operation.kind == ProviderOperation::Kind::any) return;
    const std::string message = missingInterface(operation.kind);
    const Lines expected{
        "information: " + operation.entry,
        "information: " + operation.exception + "CMPI_RC_ERROR_SYSTEM (100): " + message};
    const auto other = wrap(providerOfAnotherKind(operation.kind));
    EXPECT_EQ(outcomeOf([&] { operation.run(*other, request); }), "status 100 " + message);
    EXPECT_EQ(journal.take(), expected);
    const auto none = wrap(nullptr);
    EXPECT_EQ(outcomeOf([&] { operation.run(*none, request); }), "status 100 " + message);
    EXPECT_EQ(journal.take(), expected);
}

INSTANTIATE_TEST_SUITE_P(Each, LoggedOperation, testing::ValuesIn(providerOperations()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
