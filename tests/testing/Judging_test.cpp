#include "cmpicpp/CmpiMBService.h"
#include "tests/testing/Ports.h"

namespace {

using cimtest::failureOf;

struct Judging : ports::Fixture {
    Judging() {
        serve();
        cimtest::setLateFailure([this](const std::string& words) { late.push_back(words); });
    }
    ~Judging() override {
        cimtest::setLateFailure([](const std::string& words) { ADD_FAILURE() << words; });
    }

    std::vector<std::string> late;
};

TEST_F(Judging, RefusesAPropertyThatTheClassHasNot) {
    provider->port->fill = [](auto& instance) { instance.setProperty("Sped", 1000U); };
    EXPECT_EQ(failureOf([&] { host.get(port); }),
              "1 provider Provider1 delivered ACME_Port.Sped as uint32, which the class does not "
              "declare; did you mean 'Speed'?");
    EXPECT_NE(failureOf([&] { host.enumerate("ACME_Port"); }), "");
    EXPECT_EQ(failureOf([&] { host.names("ACME_Port"); }), "");
}

TEST_F(Judging, RefusesAPropertyOfAnotherType) {
    provider->port->fill = [](auto& instance) { instance.setProperty("Speed", "fast"); };
    EXPECT_EQ(failureOf([&] { host.get(port); }),
              "1 provider Provider1 delivered ACME_Port.Speed as string, which is declared as "
              "uint32");
}

TEST_F(Judging, HoldsAManagedInstanceThatIsShownByItself) {
    ports::Thing thing("ACME_Port", "b");
    EXPECT_EQ(host.show(thing)["Name"], "b");
    thing.fill = [](auto& instance) { instance.setProperty("Sped", 1000U); };
    EXPECT_EQ(failureOf([&] { host.show(thing); }),
              "provider of ACME_Port delivered ACME_Port.Sped as uint32, which the class does not "
              "declare; did you mean 'Speed'?");
    thing.fill = [](auto& instance) { instance.setProperty("Name", "other"); };
    EXPECT_EQ(failureOf([&] { host.show(thing); }).substr(0, 35),
              "the path of instance of ACME_Port {");
}

TEST_F(Judging, HoldsAlertsAgainstTheirClassOnWhateverThread) {
    std::string answer;
    provider->onRequest = [&](const auto& context) {
        try {
            raise(context, "Prot", "a");
        } catch (const CmpiCpp::CmpiStatus& status) {
            answer = status.message();
        }
    };
    host.names("ACME_Port");
    const std::string words =
        "provider of ACME_LinkAlert delivered ACME_LinkAlert.Prot as string, which the class does "
        "not declare; did you mean 'Port'?";
    EXPECT_EQ(late, std::vector<std::string>{words});
    EXPECT_EQ(answer, words);
    EXPECT_EQ(host.alerts().all().size(), 0U);
}

}  // namespace
