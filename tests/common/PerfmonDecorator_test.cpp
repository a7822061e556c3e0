#include "common/PerfmonDecorator.h"

#include "tests/common/Construction.h"
#include "tests/common/Failures.h"
#include "tests/common/NarrowProviders.h"
#include "tests/common/ProviderOperations.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <memory>

namespace {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiProvider;
using PYL::PerfmonDecorator;
using testing::ElementsAre;
using testing::MatchesRegex;

/// The line of an operation, however long it took.
auto timed(const std::string& operation) {
    return MatchesRegex("information: " + operation + " completed in [0-9]+\\.[0-9][0-9]s");
}

struct PerfmonBase {
    TestBroker host;
    JournalLog log;
    Journal& journal = *log.journal;
    CmpiBroker broker = host.broker();
    Request request{host, journal};

    ~PerfmonBase() { construction = {}; }

    std::unique_ptr<PerfmonDecorator> wrap(CmpiProvider* provider) {
        construction.product = provider;
        auto wrapped = std::make_unique<PerfmonDecorator>(broker, log.logger, makeProvider);
        journal.take();
        return wrapped;
    }
    InnerProvider* inner() { return new InnerProvider(host, journal); }
};

struct PerfmonDecoratorTest : PerfmonBase, testing::Test {};

TEST_F(PerfmonDecoratorTest, TimesConstructionAndDestruction) {
    construction.product = inner();
    {
        const PerfmonDecorator provider(broker, log.logger, makeProvider);
        EXPECT_EQ(construction.broker, &broker);
        EXPECT_EQ(construction.logger, &log.logger);
        EXPECT_THAT(journal.take(),
                    ElementsAre("information: in the factory", timed("constructor")));
    }
    EXPECT_THAT(journal.take(), ElementsAre("inner deleted", timed("destructor")));
}

TEST_F(PerfmonDecoratorTest, HandsTheRawContextToTheFactoryThatTakesOne) {
    const PerfmonDecorator provider(broker, log.logger, makeProviderWithContext,
                                    request.context.toCMPI());
    EXPECT_EQ(construction.context, request.context.toCMPI());
    EXPECT_EQ(construction.broker, &broker);
    EXPECT_EQ(construction.logger, &log.logger);
    EXPECT_THAT(journal.take(), ElementsAre("information: in the factory", timed("constructor")));
}

TEST_F(PerfmonDecoratorTest, TimesAConstructionThatFails) {
    for (const auto& failure : allFailures()) {
        construction.raise = failure.raise;
        EXPECT_EQ(outcomeOf([&] { PerfmonDecorator(broker, log.logger, makeProvider); }),
                  failure.name);
        EXPECT_THAT(journal.take(),
                    ElementsAre("information: in the factory", timed("constructor")));
        EXPECT_EQ(outcomeOf([&] {
                      PerfmonDecorator(broker, log.logger, makeProviderWithContext, nullptr);
                  }),
                  failure.name);
        EXPECT_THAT(journal.take(),
                    ElementsAre("information: in the factory", timed("constructor")));
    }
}

TEST_F(PerfmonDecoratorTest, LogsUnderItsOwnSource) {
    class Sources : public LogSink {
    public:
        void write(LogLevel, std::string_view source, std::string_view) noexcept override {
            last = source;
        }
        std::string last;
    };
    const auto sources = std::make_shared<Sources>();
    Logger logger("PYL_Fan", sources);
    construction.product = inner();
    PerfmonDecorator provider(broker, logger, makeProvider);
    EXPECT_EQ(sources->last, "PYL_Fan:perfmon");
    EXPECT_EQ(logger.logSource(), "PYL_Fan");
}

TEST_F(PerfmonDecoratorTest, AnswersWithTheBrokerItWasMadeWithAndDoesNotTimeThat) {
    const auto provider = wrap(nullptr);
    EXPECT_EQ(provider->getBroker(), host.broker().toRawCMPI());
    EXPECT_EQ(journal.take(), Lines{});
}

TEST_F(PerfmonDecoratorTest, PassesTheAnswerToUnloadOn) {
    auto* const product = inner();
    const auto provider = wrap(product);
    for (const int answer : {0, 1, 2, 77}) {
        product->unloadAnswer = answer;
        EXPECT_EQ(provider->unloadOK(request.context), answer);
    }
}

TEST_F(PerfmonDecoratorTest, LivesWithoutAnInnerProvider) {
    const auto provider = wrap(nullptr);
    EXPECT_EQ(provider->unloadOK(request.context), 0);
    provider->cleanup(request.context, true);
    EXPECT_THAT(journal.take(), ElementsAre(timed("unloadOK"), timed("cleanup")));
}

/// Gives the arithmetic readings of its own.
class Clockwork : public PerfmonDecorator {
public:
    using PerfmonDecorator::PerfmonDecorator;
    void log(timeval start, timeval end) { _logTimeTaken("work", &start, &end); }
};

struct PerfmonArithmetic : PerfmonDecoratorTest {
    Clockwork clockwork{broker, log.logger, makeProvider};
    std::string taken(timeval start, timeval end) {
        journal.take();
        clockwork.log(start, end);
        const auto lines = journal.take();
        const std::string prefix = "information: work completed in ";
        EXPECT_EQ(lines.size(), 1U);
        EXPECT_TRUE(lines[0].starts_with(prefix)) << lines[0];
        return lines[0].substr(prefix.size());
    }
};

TEST_F(PerfmonArithmetic, CutsHundredthsAndDoesNotRound) {
    EXPECT_EQ(taken({5, 0}, {5, 4'000}), "0.00s");
    EXPECT_EQ(taken({5, 0}, {5, 9'999}), "0.00s");
    EXPECT_EQ(taken({5, 0}, {5, 10'000}), "0.01s");
    EXPECT_EQ(taken({5, 0}, {5, 999'999}), "0.99s");
    EXPECT_EQ(taken({5, 7}, {5, 7}), "0.00s");
}

TEST_F(PerfmonArithmetic, KeepsTheSecondsWhereTheMicrosecondsBorrow) {
    EXPECT_EQ(taken({1, 900'000}, {3, 100'000}), "2.20s");
    EXPECT_EQ(taken({7, 999'000}, {8, 1'000}), "1.00s");
    EXPECT_EQ(taken({1, 100'000}, {3, 900'000}), "2.80s");
    EXPECT_EQ(taken({1, 500'000}, {2, 500'000}), "1.00s");
    EXPECT_EQ(taken({1, 500'000}, {2, 499'999}), "1.99s");
    EXPECT_EQ(taken({0, 0}, {100'000, 0}), "100000.00s");
}

TEST_F(PerfmonArithmetic, PrintsAClockThatStepsBackAsItComes) {
    EXPECT_EQ(taken({5, 30'000}, {5, 0}), "0.-3s");
    EXPECT_EQ(taken({5, 500'000}, {5, 0}), "0.-50s");
    EXPECT_EQ(taken({5, 9'999}, {5, 0}), "0.00s");
    EXPECT_EQ(taken({5, 0}, {3, 0}), "-2.00s");
    EXPECT_EQ(taken({5, 900'000}, {3, 100'000}), "-2.20s");
}

TEST_F(PerfmonArithmetic, PrintsTheSecondsAs32Bits) {
    EXPECT_EQ(taken({0, 0}, {0x1'0000'0002, 0}), "2.00s");
}

/// What no clock gives, and a caller of the arithmetic may.
TEST_F(PerfmonArithmetic, ReckonsTheMicrosecondsIn32BitsThatWrapRound) {
    EXPECT_EQ(taken({1, 0}, {2, 0x7fff'ffff}), "1.-214648s");
    EXPECT_EQ(taken({1, 0}, {2, 20'000 - 0x1'0000'0000}), "1.02s");
    EXPECT_EQ(taken({1, 0}, {1, 0x8000'0000}), "0.-214748s");
    EXPECT_EQ(taken({1, 0}, {1, 0x1'0000'0000 + 20'000}), "0.02s");
}

TEST_F(PerfmonArithmetic, TakesReadingsAsFarApartAsTheyGet) {
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(taken({least, least}, {greatest, greatest}), "-1.99s");
    EXPECT_EQ(taken({greatest, greatest}, {least, least}), "1.00s");
}

struct PerfmonOperation : PerfmonBase, testing::TestWithParam<ProviderOperation> {
    const ProviderOperation& operation = GetParam();
};

TEST_P(PerfmonOperation, ForwardsAndWritesTheTime) {
    auto* const product = inner();
    const auto provider = wrap(product);
    operation.run(*provider, request);
    EXPECT_THAT(journal.take(), ElementsAre("inner " + operation.inner, timed(operation.name)));
    EXPECT_EQ(product->context.load(), &request.context);
    if (product->path.load()) {
        EXPECT_EQ(product->path.load(), &request.path);
    }
}

TEST_P(PerfmonOperation, WritesTheTimeBeforeAnExceptionArrives) {
    auto* const product = inner();
    const auto provider = wrap(product);
    for (const auto& failure : allFailures()) {
        product->onCall = failure.raise;
        EXPECT_EQ(outcomeOf([&] { operation.run(*provider, request); }), failure.name);
        EXPECT_THAT(journal.take(), ElementsAre("inner " + operation.inner, timed(operation.name)));
    }
}

TEST_P(PerfmonOperation, TimesARequestThatTheInnerProviderHasNoInterfaceFor) {
    if (operation.kind == ProviderOperation::Kind::any) return;
    for (auto* const product :
         {providerOfAnotherKind(operation.kind), static_cast<CmpiProvider*>(nullptr)}) {
        const auto provider = wrap(product);
        EXPECT_EQ(outcomeOf([&] { operation.run(*provider, request); }),
                  std::string("status 100 ") + missingInterface(operation.kind));
        EXPECT_THAT(journal.take(), ElementsAre(timed(operation.name)));
    }
}

INSTANTIATE_TEST_SUITE_P(Each, PerfmonOperation, testing::ValuesIn(providerOperations()),
                         [](const auto& row) { return row.param.name; });

}  // namespace
