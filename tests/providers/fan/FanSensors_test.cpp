#include "providers/fan/FanSensors.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <filesystem>

namespace {

using fan::Fan;
using fan::readFans;
using fan::statusOf;
namespace fs = std::filesystem;

struct FanSensors : testing::Test {
    cimtest::FakeHost machine;
    const std::string root = machine.root();

    void write(const std::string& monitor, const std::string& name, const std::string& text) const {
        machine.write("/sys/class/hwmon/" + monitor + "/" + name, text);
    }
    void device(const std::string& monitor, const std::string& name) const {
        machine.device("/sys/class/hwmon/" + monitor, {}, name);
    }
};

TEST_F(FanSensors, AreNoneOnAHostWithoutMonitors) {
    EXPECT_TRUE(readFans(root).empty());
    fs::create_directories(root + "/sys/class/hwmon/hwmon0");
    EXPECT_TRUE(readFans(root).empty());
}

TEST_F(FanSensors, TellEverythingTheKernelKnows) {
    device("hwmon4", "nct6775.656");
    write("hwmon4", "name", "nct6775\n");
    write("hwmon4", "fan1_input", "1200\n");
    write("hwmon4", "fan1_label", "Chassis fan\n");
    write("hwmon4", "fan1_min", "300\n");
    write("hwmon4", "fan1_target", "1250\n");
    write("hwmon4", "fan1_fault", "0\n");
    write("hwmon4", "fan1_alarm", "1\n");
    write("hwmon4", "fan1_enable", "1\n");
    const auto fans = readFans(root);
    ASSERT_EQ(fans.size(), 1U);
    EXPECT_EQ(fans[0],
              (Fan{"nct6775.656:fan1", "Chassis fan", 1200, 300, 1250, false, true, true}));
}

TEST_F(FanSensors, TellLittleOfAPoorMonitor) {
    write("hwmon0", "name", "acpi_fan\n");
    write("hwmon0", "fan1_input", "0\n");
    EXPECT_EQ(readFans(root).at(0), (Fan{"acpi_fan:fan1", "fan1", 0, {}, {}, {}, {}, {}}));
    fs::remove(root + "/sys/class/hwmon/hwmon0/name");
    EXPECT_EQ(readFans(root).at(0).id, "monitor:fan1");
}

TEST_F(FanSensors, LeaveOutReadingsThatAreNoNumbers) {
    for (const auto* text :
         {"", "\n", "x\n", "-1\n", "12 34\n", "1e3\n", "99999999999999999999\n"}) {
        write("hwmon0", "fan1_input", text);
        write("hwmon0", "fan1_fault", text);
        const auto fans = readFans(root);
        ASSERT_EQ(fans.size(), 1U);
        EXPECT_EQ(fans[0].speed, std::nullopt) << text;
        EXPECT_EQ(fans[0].fault, std::nullopt) << text;
    }
}

TEST_F(FanSensors, AreFoundByTheNamesOfTheirReadings) {
    for (const auto* name : {"fan_input", "fanx_input", "fan1_inputs", "fan1", "temp1_input",
                             "fan1_min", "xfan1_input", "fan-1_input", "_input", "fan"}) {
        write("hwmon0", name, "1\n");
    }
    EXPECT_TRUE(readFans(root).empty());
    write("hwmon0", "fan12_input", "1\n");
    EXPECT_EQ(readFans(root).at(0).id, "monitor:fan12");
}

TEST_F(FanSensors, KeepTheirNamesWhenMonitorsChangeTheirNumbers) {
    device("hwmon0", "a.1");
    device("hwmon1", "b.2");
    write("hwmon0", "fan1_input", "1\n");
    write("hwmon1", "fan1_input", "2\n");
    const auto before = readFans(root);
    fs::rename(root + "/sys/class/hwmon/hwmon0", root + "/sys/class/hwmon/hwmon7");
    EXPECT_EQ(readFans(root), before);
    ASSERT_EQ(before.size(), 2U);
    EXPECT_EQ(before[0].id, "a.1:fan1");
    EXPECT_EQ(before[1].id, "b.2:fan1");
}

TEST_F(FanSensors, AreNamedOnce) {
    for (const auto* monitor : {"hwmon0", "hwmon1"}) {
        write(monitor, "name", "same\n");
        write(monitor, "fan1_input", "1\n");
    }
    EXPECT_EQ(readFans(root).size(), 1U);
}

Fan reading(std::optional<std::uint64_t> speed) {
    Fan fan;
    fan.speed = speed;
    return fan;
}

TEST(FanStatus, IsAnErrorOfAFanThatStandsStillAndIsNotToDoSo) {
    auto fan = reading(0);
    fan.minimumSpeed = 1;
    EXPECT_EQ(statusOf(fan), PYL::statusError);
    fan.minimumSpeed.reset();
    fan.alarm = true;
    EXPECT_EQ(statusOf(fan), PYL::statusError);
    fan.minimumSpeed = 0;
    fan.alarm = false;
    EXPECT_EQ(statusOf(fan), PYL::statusStopped);
}

TEST(FanStatus, IsWhatTheReadingsSay) {
    EXPECT_EQ(statusOf(reading(1000)), PYL::statusOK);
    EXPECT_EQ(statusOf(reading(0)), PYL::statusStopped);
    EXPECT_EQ(statusOf(reading(std::nullopt)), PYL::statusUnknown);
    auto fan = reading(1000);
    fan.minimumSpeed = 1000;
    EXPECT_EQ(statusOf(fan), PYL::statusOK);
    fan.minimumSpeed = 1001;
    EXPECT_EQ(statusOf(fan), PYL::statusDegraded);
    fan = reading(1000);
    fan.alarm = true;
    EXPECT_EQ(statusOf(fan), PYL::statusDegraded);
    fan.fault = true;
    EXPECT_EQ(statusOf(fan), PYL::statusError);
    fan.speed.reset();
    EXPECT_EQ(statusOf(fan), PYL::statusError);
    fan.enabled = false;
    EXPECT_EQ(statusOf(fan), PYL::statusStopped);
    fan = reading(1000);
    fan.fault = fan.alarm = false;
    fan.enabled = true;
    EXPECT_EQ(statusOf(fan), PYL::statusOK);
}

}  // namespace
