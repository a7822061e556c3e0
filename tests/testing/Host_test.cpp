#include "cmpicpp/CmpiMBService.h"
#include "common/PYLUtil.h"
#include "tests/testing/Ports.h"

#include <map>

namespace {

using cimtest::failureOf;
using cimtest::Path;
using cimtest::Post;
using Paths = std::vector<Path>;

using PortsHost = ports::Fixture;

struct HostTest : ports::Fixture {
    HostTest() { serve(); }
};

TEST_F(HostTest, AnswersEachOperationWithPlainValues) {
    provider->port->fill = [](auto& instance) { instance.setProperty("Speed", 1000U); };
    EXPECT_EQ(host.names("ACME_Port"), Paths{port});
    EXPECT_EQ(host.enumerate("ACME_Port").at(0), host.get(port));
    EXPECT_EQ(host.get(port)["Speed"], 1000);
    EXPECT_EQ(host.get(port).path(), port);
    EXPECT_FALSE(host.get(port, {{"Name"}}).has("Speed"));
    EXPECT_EQ(host.associatorNames(slot), Paths{port});
    EXPECT_EQ(host.associators(slot, {.resultClass = "ACME_Port"}).at(0)["Speed"], 1000);
    EXPECT_EQ(host.associators(slot, {.resultClass = "ACME_Slot"}).size(), 0U);
    EXPECT_EQ(host.references(port).at(0)["Antecedent"], slot);
    EXPECT_EQ(host.referenceNames(port).at(0)["Dependent"], port);
}

TEST_F(HostTest, ConvertsArgumentsAsTheMethodDeclaresThem) {
    const auto answer = host.invoke(port, "Identify", {{"Seconds", 7}});
    EXPECT_EQ(answer.returned, "7 seconds");
    EXPECT_EQ(answer["Led"], "led of a");
    EXPECT_EQ(failureOf([&] { answer["Light"]; }), "the answer has no Light; it has Led");
    EXPECT_EQ(failureOf([&] {
                  host.invoke(port, "Identify", {{"Second", 7}});
              }).substr(0, 2),
              "4 ");
}

TEST_F(HostTest, FailsAsTheProviderDoes) {
    EXPECT_EQ(failureOf([&] { host.get("ACME_Port.Name=\"x\""); }),
              "6 no such instance: /root/acme:ACME_Port.Name=\"x\"");
    EXPECT_EQ(failureOf([&] { host.remove(port); }).substr(0, 2), "7 ");
    EXPECT_EQ(failureOf([&] { host.modify(port, {{"Speed", 1}}); }).substr(0, 2), "7 ");
    EXPECT_EQ(failureOf([&] { host.create("ACME_Port", {{"Name", "b"}}); }).substr(0, 2), "7 ");
    EXPECT_EQ(failureOf([&] { host.enumerate("ACME_Prot"); }).substr(0, 2), "5 ");
    EXPECT_EQ(failureOf([&] { host.query("SELECT * FROM ACME_Port"); }).substr(0, 2), "7 ");
}

TEST_F(HostTest, SaysWhatIsWrongWithAPath) {
    EXPECT_NE(failureOf([] { Path("ACME_Port.Name="); }), "");
    EXPECT_NE(failureOf([&] { host.get("ACME_Port.Nmae=\"a\""); }), "");
}

TEST_F(HostTest, HasTheInstancesOfItsMofForWhatNobodyServes) {
    cimtest::Host other("root/acme");
    other.readMofText(std::string(ports::classes) + "instance of ACME_Port { Name = \"m\"; };");
    EXPECT_EQ(other.get("ACME_Port.Name=\"m\"")["Name"], "m");
}

TEST_F(HostTest, TakesClassesAndProvidersBeforeItsFirstCallOnly) {
    host.names("ACME_Port");
    EXPECT_EQ(failureOf([&] { host.readMofText(""); }),
              "classes and providers come before the first call");
}

TEST_F(HostTest, SaysWhereMofIsWrong) {
    cimtest::Host other;
    EXPECT_EQ(failureOf([&] { other.readMofText("class ACME_Port {"); }).substr(0, 9), "text:1:18");
    EXPECT_NE(failureOf([&] { other.readMof("nothing.mof"); }), "");
    EXPECT_EQ(failureOf([&] { other.serve({}, {"ACME_Port"}); }),
              "namespace root/test has no class ACME_Port");
}

TEST_F(HostTest, KnowsTheSmallSchema) {
    cimtest::Host other("root/test", {"base/base.mof", "PYL_Fan.mof"});
    EXPECT_EQ(failureOf([&] { other.names("PYL_Fan"); }),
              "7 no provider serves class PYL_Fan in namespace root/test");
}

TEST_F(HostTest, TurnsIndicationsOnAndOff) {
    provider->onWatch = [this](const auto& context) { raise(context, "Port", "a"); };
    host.subscribe("ACME_LinkAlert");
    EXPECT_TRUE(provider->isWatching);
    EXPECT_EQ(host.alerts().take().at(0)["Port"], "a");
    host.unsubscribe();
    EXPECT_FALSE(provider->isWatching);
}

TEST_F(HostTest, TakesWhatIsPosted) {
    provider->port->fill = [](auto& instance) {
        instance.setProperty("GroupOperationalStatus",
                             PYL::makeArray(std::vector<unsigned short>{3}));
    };
    provider->onRequest = [this](const auto& context) {
        PYL::PYLUtil::postStatus(host.logger(), context, provider->port->getInstance());
    };
    host.names("ACME_Port");
    EXPECT_EQ(host.posts().take(), (std::vector<Post>{{"ACME_Port", 3}}));
}

TEST_F(HostTest, KeepsTheLinesOfTheLibraryAndOfHostedLoggers) {
    provider->onRequest = [this](const auto&) {
        host.logger().warn("speed of %s", "a");
        hostedLogger("acme").error("hosted");
    };
    host.names("ACME_Port");
    EXPECT_EQ(host.log().waitFor("warning test: speed of a").level, "warning");
    EXPECT_EQ(host.log().countOf("error acme: hosted"), 1U);
}

TEST_F(HostTest, ServesSeveralProvidersThatAskEachOther) {
    provider->onRequest = [&](const CmpiCpp::CmpiContext& context) {
        const auto other = CmpiCpp::makeCmpiObjectPath(host.broker(), "root/other", "ACME_Fan");
        EXPECT_EQ(CmpiCpp::CmpiMBService(host.handle(), host.logger())
                      .enumInstanceNames(context, other)
                      .size(),
                  1U);
    };
    host.readMofText(
        "class ACME_Fan { [Key] string Name; }; instance of ACME_Fan { Name = \"f\"; };",
        "root/other");
    EXPECT_EQ(host.names("ACME_Port").size(), 1U);
}

/// Keeps what a client makes, changes and deletes: speeds by name.
class Keeper : public CmpiCpp::CmpiInstanceProvider {
public:
    explicit Keeper(CMPIBroker* broker) : _broker(broker) {}

    CMPIBroker* getBroker() override { return _broker; }
    void enumInstanceNames(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                           CmpiCpp::CmpiObjectPathResult& result) override {
        for (const auto& [name, speed] : _speeds) {
            result.deliver(ports::Thing::path("ACME_Port", name));
        }
    }
    void enumInstances(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&, const char**,
                       CmpiCpp::CmpiInstanceResult&) override {}
    void getInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath& path, const char**,
                     CmpiCpp::CmpiInstanceResult& result) override {
        auto instance = PYL::makeInstanceAt(path);
        instance.setProperty("Speed", _speeds.at(path.getKey("Name").asString()));
        result.deliver(instance);
    }
    void createInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath&,
                        const CmpiCpp::CmpiInstance& instance,
                        CmpiCpp::CmpiObjectPathResult& result) override {
        const auto name = instance.getProperty("Name").asString();
        _speeds[name] = _speedOf(instance);
        result.deliver(ports::Thing::path("ACME_Port", name));
    }
    void modifyInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath& path,
                        const CmpiCpp::CmpiInstance& instance, const char**) override {
        _speeds[path.getKey("Name").asString()] = _speedOf(instance);
    }
    void deleteInstance(const CmpiCpp::CmpiContext&, const CmpiCpp::CmpiObjectPath& path) override {
        _speeds.erase(path.getKey("Name").asString());
    }

private:
    static unsigned int _speedOf(const CmpiCpp::CmpiInstance& instance) {
        return static_cast<unsigned int>(instance.getProperty("Speed").asUint64());
    }

    CMPIBroker* _broker;
    std::map<std::string, unsigned int> _speeds;
};

TEST_F(PortsHost, MakesChangesAndDeletesInstances) {
    host.serve(std::make_unique<Keeper>(host.broker().toRawCMPI()), {"ACME_Port"});
    EXPECT_EQ(host.create("ACME_Port", {{"Name", "a"}, {"Speed", 10}}), port);
    host.modify(port, {{"Speed", 100}});
    EXPECT_EQ(host.get(port)["Speed"], 100);
    host.remove(port);
    EXPECT_EQ(host.names("ACME_Port").size(), 0U);
}

TEST(CModule, IsLoadedByItsRegistration) {
    cimtest::Host host("root/test");
    host.readMofText("class TST_Thing { [Key] string Name; uint32 Number; };");
    host.loadText("TST_Thing root/test InstanceGuest instanceGuest instance", GUEST_FOLDER);
    EXPECT_EQ(host.names("TST_Thing"), Paths{"TST_Thing.Name=\"only\""});
    EXPECT_EQ(host.log().countOf("error"), 0U);
    EXPECT_TRUE(host.unload("instanceGuest"));
    EXPECT_EQ(host.names("TST_Thing").size(), 1U);
}

TEST(CModule, ThatIsMissingIsToldWithTheFolder) {
    cimtest::Host host("root/test");
    host.readMofText("class TST_Thing { [Key] string Name; };");
    host.loadText("TST_Thing root/test Nobody nobody instance", "/nowhere");
    EXPECT_EQ(failureOf([&] { host.names("TST_Thing"); }),
              "1 module nobody cannot be loaded: libnobody.so was not found in /nowhere");
}

}  // namespace
