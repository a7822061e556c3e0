#include "common/DecoratorUtils.h"

#include "cmpicpp/CmpiArray.h"
#include "testing/cimhost/testing/FaultyBroker.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/common/CapturedResults.h"
#include "tests/common/Failures.h"
#include "tests/common/InnerProvider.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <functional>

namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiProvider;

struct NoKindOfProvider : CmpiProvider {
    CMPIBroker* getBroker() override { return nullptr; }
};

TEST(ProviderCasts, FindTheInterfacesOfAProvider) {
    TestBroker host;
    Journal journal;
    InnerProvider provider(host, journal);
    CmpiProvider* const base = &provider;
    EXPECT_EQ(PYL::asInstanceProvider(base), &provider);
    EXPECT_EQ(PYL::asAssociationProvider(base), &provider);
    EXPECT_EQ(PYL::asMethodProvider(base), &provider);
    EXPECT_EQ(PYL::asIndicationProvider(base), &provider);
}

TEST(ProviderCasts, SayWhichInterfaceIsMissing) {
    NoKindOfProvider other;
    for (CmpiProvider* provider :
         {static_cast<CmpiProvider*>(&other), static_cast<CmpiProvider*>(nullptr)}) {
        EXPECT_EQ(outcomeOf([&] { PYL::asInstanceProvider(provider); }),
                  "status 100 Not an instance provider");
        EXPECT_EQ(outcomeOf([&] { PYL::asAssociationProvider(provider); }),
                  "status 100 Not an association provider");
        EXPECT_EQ(outcomeOf([&] { PYL::asMethodProvider(provider); }),
                  "status 100 Not a method provider");
        EXPECT_EQ(outcomeOf([&] { PYL::asIndicationProvider(provider); }),
                  "status 100 Not an indication provider");
    }
}

struct ResultLoggers : testing::Test {
    TestBroker host;
    JournalLog log;
    Journal& journal = *log.journal;
};

TEST_F(ResultLoggers, LogPassOnAndCountPaths) {
    CapturedPaths sink(journal);
    LoggedObjectPathResult result(log.logger, sink);
    EXPECT_EQ(result.size(), 0);
    result.deliver(host.path("PYL_Thing", "a%s"));
    result.deliver(CmpiObjectPath());
    EXPECT_EQ(result.size(), 2);
    EXPECT_EQ(journal.take(),
              (Lines{"information: deliver(//server-1/root/ktq:PYL_Thing.Id=\"a%s\")",
                     "delivered //server-1/root/ktq:PYL_Thing.Id=\"a%s\"", "information: deliver()",
                     "delivered "}));
}

TEST_F(ResultLoggers, PassOnWhatTheirLineCannotTell) {
    cimtest::FaultyBroker faulty(host.real());
    const CmpiCpp::CmpiBroker broker(faulty.handle());
    const auto path = CmpiCpp::makeCmpiObjectPath(broker, "root/ktq", "PYL_Thing");
    const auto instance = CmpiCpp::makeCmpiInstance(broker, path);
    faulty.failFrom("CMPIInstanceFT.getObjectPath", 1, cimtest::FaultyBroker::Fault::status);
    struct : CmpiCpp::CmpiInstanceResult {
        void deliver(const CmpiCpp::CmpiInstance&) override {}
    } sink;
    LoggedInstanceResult result(log.logger, sink);
    result.deliver(instance);
    EXPECT_EQ(result.size(), 1);
    EXPECT_EQ(journal.take(), Lines{"information: deliver(<bad value>)"});
}

TEST_F(ResultLoggers, LogPassOnAndCountInstances) {
    CapturedInstances sink(journal);
    LoggedInstanceResult result(log.logger, sink);
    EXPECT_EQ(result.size(), 0);
    result.deliver(host.instance(host.path("PYL_Thing", "a")));
    EXPECT_EQ(result.size(), 1);
    EXPECT_EQ(journal.take(), (Lines{"information: deliver(//server-1/root/ktq:PYL_Thing.Id=\"a\")",
                                     "delivered instance of PYL_Thing {Id = \"a\";} at "
                                     "//server-1/root/ktq:PYL_Thing.Id=\"a\""}));
}

TEST_F(ResultLoggers, PassOnTheVeryObjectThatTheyGot) {
    struct Address : CmpiCpp::CmpiObjectPathResult {
        void deliver(const CmpiObjectPath& path) override { seen = &path; }
        const CmpiObjectPath* seen = nullptr;
    } sink;
    LoggedObjectPathResult result(log.logger, sink);
    const auto path = host.path("PYL_Thing", "a");
    result.deliver(path);
    EXPECT_EQ(sink.seen, &path);
}

/// One delivery: what the log says and what the sink gets, of a return value and of an output
/// argument named "Out".
struct Delivery {
    std::string type;
    std::string line;       ///< after "deliver(" respectively "deliver(Out="
    std::string namedLine;  ///< where it differs
    std::string value;
    std::function<void(CmpiMethodResult&)> returned;
    std::function<void(CmpiMethodResult&, const CmpiName&)> output;
};

template <typename Value>
Delivery row(std::string type, std::string line, std::string value, Value given,
             std::string namedLine = "") {
    if (namedLine.empty()) namedLine = line;
    return {
        std::move(type),
        std::move(line),
        std::move(namedLine),
        std::move(value),
        [given](CmpiMethodResult& result) { result.deliver(given); },
        [given](CmpiMethodResult& result, const CmpiName& name) { result.deliver(name, given); }};
}

std::vector<Delivery> deliveries(TestBroker& host) {
    auto path = host.path("PYL_Thing", "a");
    path.addKey("Speed", 12U);
    auto array = CmpiCpp::makeCmpiArray(host.broker(), 2, CMPI_uint16);
    array.setElementAt(0, static_cast<unsigned short>(1));
    auto arguments = CmpiCpp::makeCmpiArgs(host.broker());
    arguments.addArg("List", array);
    const auto pathText = path.str();
    return {
        row("data", "[uint32]12)", "12", path.getKey("Speed")),
        row("data", "[string]\"a\")", "\"a\"", path.getKey("Id")),
        row("data", "[uint16 array]{1, NULL})", "{1, NULL}", arguments.getArg("List")),
        row("uint8", "[uint8]255)", "255", static_cast<unsigned char>(255)),
        row("uint8", "[uint8]65)", "65", static_cast<unsigned char>('A')),
        row("sint8", "[sint8]-128)", "-128", static_cast<signed char>(-128)),
        row("uint16", "[uint16]65535)", "65535", static_cast<unsigned short>(65535)),
        row("sint16", "[sint16]-32768)", "-32768", static_cast<short>(-32768)),
        row("uint32", "[uint32]4294967295)", "4294967295", UINT_MAX),
        row("sint32", "[sint32]-2147483648)", "-2147483648", INT_MIN),
        row("uint64", "[uint64]18446744073709551615)", "18446744073709551615", ULLONG_MAX),
        row("sint64", "[sint64]-9223372036854775808)", "-9223372036854775808", LLONG_MIN),
        row("real32", "[real32]1.500000)", "1.500000", 1.5F),
        row("real32", "[real32]0.100000)", "0.100000", 0.1F),
        row("real64", "[real64]-2.250000)", "-2.250000", -2.25, "[real64]-2.250000"),
        row("boolean", "[bool]1)", "1", true, "[bool]1"),
        row("boolean", "[bool]0)", "0", false, "[bool]0"),
        row("text", "[char*]100% %s%n)", "100% %s%n", static_cast<const char*>("100% %s%n")),
        row("text", "[char*](null))", "NULL", static_cast<const char*>(nullptr)),
        row("string", "[string]a%db)", "a%db", std::string("a%db")),
        row("string", "[string])", "", std::string()),
        row("path", "[obj]" + pathText + ")", pathText, path),
        row("path", "[obj])", "", CmpiObjectPath()),
    };
}

TEST_F(ResultLoggers, LogPassOnAndCountReturnValuesOfEveryType) {
    CapturedMethodResult sink(journal);
    LoggedMethodResult result(log.logger, sink);
    int count = 0;
    for (const auto& delivery : deliveries(host)) {
        delivery.returned(result);
        EXPECT_EQ(journal.take(), (Lines{"information: deliver(" + delivery.line,
                                         "delivered " + delivery.type + " " + delivery.value}));
        EXPECT_EQ(result.size(), ++count);
    }
}

TEST_F(ResultLoggers, LogPassOnAndCountOutputArgumentsOfEveryType) {
    CapturedMethodResult sink(journal);
    LoggedMethodResult result(log.logger, sink);
    int count = 0;
    for (const auto& delivery : deliveries(host)) {
        delivery.output(result, "Out");
        EXPECT_EQ(journal.take(),
                  (Lines{"information: deliver(Out=" + delivery.namedLine,
                         "delivered Out = " + delivery.type + " " + delivery.value}));
        EXPECT_EQ(result.size(), ++count);
    }
}

TEST_F(ResultLoggers, CountNothingThatTheSinkRefuses) {
    CapturedPaths pathSink(journal);
    CapturedInstances instanceSink(journal);
    CapturedMethodResult methodSink(journal);
    LoggedObjectPathResult paths(log.logger, pathSink);
    LoggedInstanceResult instances(log.logger, instanceSink);
    LoggedMethodResult method(log.logger, methodSink);
    const auto instance = host.instance(host.path("PYL_Thing", "a"));
    for (const auto& failure : allFailures()) {
        pathSink.onDeliver = instanceSink.onDeliver = methodSink.onDeliver = failure.raise;
        EXPECT_EQ(outcomeOf([&] { paths.deliver(instance.getPath()); }), failure.name);
        EXPECT_EQ(outcomeOf([&] { instances.deliver(instance); }), failure.name);
        for (const auto& delivery : deliveries(host)) {
            EXPECT_EQ(outcomeOf([&] { delivery.returned(method); }), failure.name);
            EXPECT_EQ(outcomeOf([&] { delivery.output(method, "Out"); }), failure.name);
        }
    }
    EXPECT_EQ(paths.size(), 0);
    EXPECT_EQ(instances.size(), 0);
    EXPECT_EQ(method.size(), 0);
    // Each item was logged before it was refused, and nothing was delivered.
    for (const auto& line : journal.take()) EXPECT_EQ(line.rfind("information: deliver(", 0), 0U);
}

TEST_F(ResultLoggers, PrintTheLongestRealsWhole) {
    CapturedMethodResult sink(journal);
    LoggedMethodResult result(log.logger, sink);
    result.deliver(DBL_MAX);
    const auto line = journal.take().front();
    EXPECT_EQ(line, "information: deliver([real64]" + std::to_string(DBL_MAX) + ")");
}

}  // namespace
