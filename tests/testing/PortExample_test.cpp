// The example of docs/testing-a-provider.md, which quotes it: a small provider and its test.

#include "cmpicpp/CmpiArgs.h"
#include "platform/host/HostFiles.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Methods.h"
#include "toolkit/Properties.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

namespace {

/// A network port, as the kernel shows it below /sys/class/net.
class Port : public PYL::CmpiManagedInstance {
public:
    explicit Port(std::string name) : _name(std::move(name)) {}

    CmpiCpp::CmpiName getClassName() override { return "ACME_Port"; }
    CmpiCpp::CmpiObjectPath getPath() override {
        return PYL::makeLocalPath("ACME_Port", {{"Name", _name}}, "root/acme");
    }
    CmpiCpp::CmpiInstance getInstance() override {
        auto instance = PYL::makeInstanceAt(getPath());
        const auto speed = HostFiles().line("/sys/class/net/" + _name + "/speed");
        if (speed) instance.setProperty("Speed", std::stoull(*speed));
        return instance;
    }
    void invokeMethod(const CmpiCpp::CmpiName& method, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& out) override {
        PYL::requireMethod(getPath(), method, "ACME_Port", "Identify");
        out.deliver("Blinks", static_cast<unsigned int>(in.getArg("Seconds").asUint64() * 2));
        out.deliver(0U);
    }

private:
    std::string _name;
};

constexpr const char* classes = R"(
class ACME_Port {
    [Key] string Name;
    uint64 Speed;
    uint32 Identify([In] uint32 Seconds, [In(false), Out] uint32 Blinks);
};)";

struct PortTest : testing::Test {
    PortTest() {
        machine.device("/sys/class/net/eth0", {{"speed", "1000"}});
        host.readMofText(classes);
        host.add(std::make_unique<Port>("eth0"));
        host.add(std::make_unique<Port>("eth1"));
    }

    cimtest::FakeHost machine;
    cimtest::ProviderHost host{"root/acme"};
};

TEST_F(PortTest, ShowsTheSpeedThatTheKernelKnows) {
    EXPECT_EQ(host.get("ACME_Port.Name=\"eth0\"")["Speed"], 1000);
    EXPECT_FALSE(host.get("ACME_Port.Name=\"eth1\"").has("Speed"));
}

TEST_F(PortTest, NamesItsPorts) {
    EXPECT_EQ(host.names("ACME_Port"),
              (std::vector<cimtest::Path>{"ACME_Port.Name=\"eth0\"", "ACME_Port.Name=\"eth1\""}));
}

TEST_F(PortTest, BlinksTwiceASecond) {
    const auto answer = host.invoke("ACME_Port.Name=\"eth0\"", "Identify", {{"Seconds", 5}});
    EXPECT_EQ(answer.returned, 0);
    EXPECT_EQ(answer["Blinks"], 10);
}

TEST_F(PortTest, SaysWhichPortItHasNot) {
    EXPECT_EQ(cimtest::failureOf([&] { host.get("ACME_Port.Name=\"eth9\""); }),
              "6 no such instance: /root/acme:ACME_Port.Name=\"eth9\"");
}

}  // namespace
