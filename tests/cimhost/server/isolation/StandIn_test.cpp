#include "cimhost/server/isolation/StandIn.h"

#include "cimhost/indications/FilterCall.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/query/WqlParser.h"
#include "cimhost/repository/CimError.h"
#include "testing/cimhost/testing/Allocations.h"
#include "tests/cimhost/cimxml/TestSchema.h"
#include "tests/support/BrokerFixture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace cimhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class NoUpCalls final : public HttpHandler {
public:
    void handle(const HttpRequest&, HttpReply& reply) override { reply.refuse(501); }
};

class KeptFans final : public InstanceSink {
public:
    void deliver(const Instance& instance, const Class*, const PropertySelection&) override {
        ids.push_back(instance.find("Id")->value.get<Text>()->str());
    }
    std::vector<std::string> ids;
};

ObjectPath fan(const std::string& id) {
    return {{}, "root/test", "TEST_Fan", {{"Id", Value::string(id)}}};
}

Repository testSchema() {
    Repository repository;
    fillTestSchema(repository);
    return repository;
}

Registrations fans() {
    Registrations registrations;
    registrations.readText("TEST_Fan root/test FanProvider Fans instance method indication\n", "");
    return registrations;
}

/// Operations of a server whose one module runs in another process.
struct StandInTest : testing::Test {
    StandInTest() {
        settings.command = {TEST_SCRIPTED_MODULE, journalFile};
        const auto make = [this](auto mi) {
            return [this, mi](const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*) {
                return (standIn.*mi)();
            };
        };
        modules.addStatic("Fans", {make(&StandIn::instanceMi), make(&StandIn::associationMi),
                                   make(&StandIn::methodMi), make(&StandIn::indicationMi)});
        broker.setOperations(&operations);
        request.nameSpace = "root/test";
        request.principal = "ann";
    }

    /// What runs for the process may ask the stand-in, which is gone before it.
    ~StandInTest() override {
        process.beginEnd();
        process.awaitEnd(Clock::now() + std::chrono::seconds(60));
    }

    std::vector<std::string> idsOf(const std::string& id) {
        KeptFans kept;
        operations.getInstance(request, fan(id), {}, kept);
        return kept.ids;
    }

    /// "code: text" of the CimError that asking for a fan throws.
    std::string failureOf(const std::string& id) {
        return errorOf([&] { idsOf(id); });
    }

    /// Calls the indication MI about the filter.
    void tellFilter(const char* query, auto&& work) {
        FilterCall call(broker, request, std::make_shared<const WqlQuery>(parseQuery("WQL", query)),
                        "root/test");
        const auto use = modules.use<CMPIIndicationMI>(
            *modules.registrations().find(ProviderType::indication, "root/test", "TEST_Fan"));
        work(call, use);
    }
    void activate(const char* query, bool isFirst) {
        tellFilter(query, [&](FilterCall& call, auto& use) { call.activate(use, isFirst); });
    }
    void deactivate(const char* query, bool isLast) {
        tellFilter(query, [&](FilterCall& call, auto& use) { call.deactivate(use, isLast); });
    }

    /// What the process was asked since the last time.
    std::vector<std::string> journal() {
        std::vector<std::string> lines;
        for (std::string line; std::getline(reader, line);) lines.push_back(line);
        reader.clear();
        return lines;
    }

    /// The same, once there are so many lines.
    std::vector<std::string> awaitJournal(std::size_t count) {
        std::vector<std::string> told;
        const auto end = Clock::now() + std::chrono::seconds(60);
        while (told.size() < count && Clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            for (std::string& each : journal()) told.push_back(std::move(each));
        }
        return told;
    }

    const TemporaryFolder folder;
    const std::string journalFile = (folder.path() / "journal").string();
    std::ofstream emptyJournal{journalFile};
    std::ifstream reader{journalFile};
    Repository repository = testSchema();
    CapturingLog log;
    Broker broker{repository, log, fillUpCalls};
    IsolationSettings settings;
    NoUpCalls upCalls;
    ModuleProcess process{"Fans", settings, upCalls, log};
    StandIn standIn{broker, process, "FanProvider"};
    ModuleHost modules{broker, fans(), {}};
    Operations operations{broker, modules};
    RequestContext request;
};

TEST_F(StandInTest, AsksTheProcessInTheNameOfItsProviderAndUser) {
    EXPECT_THAT(idsOf("f1"), ElementsAre("f1"));
    EXPECT_THAT(journal(), ElementsAre("getInstance TEST_Fan of TEST_Fan by FanProvider for ann"));
}

TEST_F(StandInTest, BringsTheReturnValueOfAMethod) {
    const MethodResult result = operations.invokeMethod(
        request, fan("f1"), "Spin", {{"Names", Value::array(CimType::string, {})}});
    EXPECT_EQ(result.returnValue, Value::unsignedInteger(CimType::uint32, 7));
}

TEST_F(StandInTest, AnErrorOfTheProviderKeepsItsCodeAndWords) {
    EXPECT_EQ(failureOf("gone"), "6: no fan \"gone\"");
    EXPECT_EQ(process.state().crashes, 0U);
}

TEST_F(StandInTest, ACrashFailsTheRequestWithAllThatIsKnown) {
    EXPECT_EQ(failureOf("die"),
              "1: module Fans, provider FanProvider, operation getInstance, path "
              "root/test:TEST_Fan.Id=\"die\": its process ended by SIGABRT");
    EXPECT_THAT(idsOf("f2"), ElementsAre("f2"));
}

TEST_F(StandInTest, AResultThatNobodyTakesCostsNoProcess) {
    class Full final : public InstanceSink {
    public:
        void deliver(const Instance&, const Class*, const PropertySelection&) override {
            throw StreamError(StreamError::Kind::lost, "the client is gone");
        }
    };
    Full full;
    EXPECT_THROW(operations.getInstance(request, fan("f1"), {}, full), StreamError);
    EXPECT_THAT(idsOf("f1"), ElementsAre("f1"));
    EXPECT_EQ(process.state().starts, 1U);
    EXPECT_EQ(process.state().crashes, 0U);
}

TEST_F(StandInTest, ANewProcessIsToldOfTheFiltersThatAreActive) {
    activate("SELECT * FROM TEST_Fan", true);
    activate("SELECT Id FROM TEST_Fan", false);
    activate("SELECT Count FROM TEST_Fan", false);
    deactivate("SELECT Id FROM TEST_Fan", false);
    standIn.noteEnabled(request, process.state().started);
    EXPECT_EQ(journal().size(), 4U);
    EXPECT_THAT(failureOf("die"), HasSubstr("SIGABRT"));
    const std::vector<std::string> told = awaitJournal(3);  // without a request
    const std::string call = "invokeMethod CIMHOST_IndicationProvider of  by FanProvider for ann ";
    EXPECT_THAT(
        told,
        ElementsAre(
            call + "ActivateFilter Query=SELECT * FROM TEST_Fan QueryLanguage=WQL IsFirst=yes",
            call + "ActivateFilter Query=SELECT Count FROM TEST_Fan QueryLanguage=WQL IsFirst=no",
            call + "EnableIndications"));
}

TEST_F(StandInTest, AFilterThatIsRefusedAnewKeepsNoOtherAndIsTriedAgain) {
    settings.restorePause = std::chrono::milliseconds(1);
    request.principal = "tom";
    EXPECT_THROW(activate("SELECT * FROM TEST_Fan", true), CimError);
    activate("SELECT * FROM TEST_Fan", true);
    activate("SELECT Count FROM TEST_Fan", false);
    EXPECT_EQ(journal().size(), 3U);
    EXPECT_THAT(failureOf("die"), HasSubstr("SIGABRT"));
    const std::string call = "invokeMethod CIMHOST_IndicationProvider of  by FanProvider for tom ";
    EXPECT_THAT(
        awaitJournal(3),
        ElementsAre(
            call + "ActivateFilter Query=SELECT * FROM TEST_Fan QueryLanguage=WQL IsFirst=yes",
            call + "ActivateFilter Query=SELECT Count FROM TEST_Fan QueryLanguage=WQL IsFirst=yes",
            call + "ActivateFilter Query=SELECT * FROM TEST_Fan QueryLanguage=WQL IsFirst=no"));
    EXPECT_EQ(log.countOf("warning Fans: after its new start: not yet"), 1U);
    deactivate("SELECT * FROM TEST_Fan", false);
    EXPECT_EQ(journal().size(), 1U);
}

TEST_F(StandInTest, AWalkThatDeliversSlowlyIsNotSilent) {
    settings.providerTime = std::chrono::milliseconds(1'000);
    request.principal = "sam";
    KeptFans kept;
    operations.enumerateInstances(request, fan({}), {}, kept);
    EXPECT_THAT(kept.ids, ElementsAre("1", "2", "3", "4", "5"));
    EXPECT_EQ(process.state().crashes, 0U);
}

TEST_F(StandInTest, ANewProcessIsNotToldToEnableWhatAnOldOneRefused) {
    activate("SELECT * FROM TEST_Fan", true);
    request.principal = "eve";
    tellFilter("SELECT * FROM TEST_Fan", [this](FilterCall&, auto& use) {
        EXPECT_EQ(errorOf([&] { enableIndications(broker, request, "root/test", use); }),
                  "2: not for eve");
    });
    EXPECT_EQ(journal().size(), 2U);
    EXPECT_THAT(failureOf("die"), HasSubstr("SIGABRT"));
    EXPECT_THAT(awaitJournal(1), ElementsAre(HasSubstr(" ActivateFilter ")));
    // What else it is told would come in between.
    for (int i = 0; i < 20; ++i) idsOf("f1");
    EXPECT_THAT(journal(), testing::Each(HasSubstr("getInstance")));
}

TEST_F(StandInTest, AFilterThatEndsWithoutAProcessStartsNone) {
    activate("SELECT * FROM TEST_Fan", true);
    journal();
    settings.command = {"/nonexistent/program"};  // else it would be there again
    failureOf("die");
    deactivate("SELECT * FROM TEST_Fan", true);
    EXPECT_EQ(process.state().starts, 1U);
    EXPECT_EQ(journal().size(), 0U);
}

TEST_F(StandInTest, LackOfMemoryFailsACallAboutAFilterAndNothingElse) {
    bool hasFailed = true;
    for (int nth = 1; hasFailed; ++nth) {
        ASSERT_LT(nth, 5'000);
        const auto run = [&](FilterCall& call, auto& use) {
            const cimtest::FailingAllocation failing(nth, false);
            try {
                call.authorize(use);
                call.activate(use, true);
                call.deactivate(use, true);
            } catch (const std::exception&) {
            }
            hasFailed = cimtest::allocationHasFailed();
        };
        tellFilter("SELECT * FROM TEST_Fan", run);
    }
}

TEST_F(StandInTest, AnswersManyThreadsEachItsOwn) {
    std::atomic<int> right = 0;
    std::vector<std::thread> askers;
    for (int asker = 0; asker < 8; ++asker) {
        askers.emplace_back([&, asker] {
            for (int i = 0; i < 10; ++i) {
                const std::string id = std::to_string(asker * 100 + i);
                if (idsOf(id) == std::vector<std::string>{id}) ++right;
            }
        });
    }
    for (std::thread& each : askers) each.join();
    EXPECT_EQ(right, 80);
    EXPECT_EQ(journal().size(), 80U);
    EXPECT_EQ(process.state().starts, 1U);
}

}  // namespace
}  // namespace cimhost
