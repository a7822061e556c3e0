#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"
#include "providers/baseserver/PciBus.h"
#include "providers/baseserver/ServerFacts.h"
#include "tests/common/HostName.h"
#include "tests/common/RedirectedFiles.h"
#include "tests/common/TestBroker.h"

/// A broker that knows the classes of the module, and data for it.
struct BaseServerFixture : testing::Test {
    TestBroker host{{{"CIM_ComputerSystem", ""},
                     {"PYL_ComputerSystem", "CIM_ComputerSystem"},
                     {"PYL_ComputerSystemChassis", ""},
                     {"PYL_PCIDevice", ""},
                     {"PYL_PCIDeviceGroup", ""},
                     {"PYL_BaseServerWorker", ""},
                     {"KT_AlertIndication", ""},
                     {"CIM_SystemDevice", ""},
                     {"PYL_SystemPCIDevice", "CIM_SystemDevice"},
                     {"PYL_ComputerSystemPackage", ""}}};

    RedirectedFiles files;  // the provider keeps a count in a store

    static baseserver::PciFunction function(int bus, int device, int number) {
        baseserver::PciFunction made;
        made.address = {0, bus, device, number};
        return made;
    }

    static std::string deviceText(std::string const& location) {
        return "//server-1/root/ktq:PYL_PCIDevice.CreationClassName=\"PYL_PCIDevice\","
               "SystemCreationClassName=\"PYL_ComputerSystem\",SystemName=\"server-1\","
               "DeviceID=\"KTQ:PYL_PCIDevice:0000:" +
               location + "\"";
    }
    static inline std::string const systemText =
        "//server-1/root/ktq:PYL_ComputerSystem.CreationClassName=\"PYL_ComputerSystem\","
        "Name=\"server-1\"";
    static inline std::string const chassisText =
        "//server-1/root/ktq:PYL_ComputerSystemChassis."
        "CreationClassName=\"PYL_ComputerSystemChassis\",Tag=\"1\"";

    static inline std::string const groupText =
        "//server-1/root/ktq:PYL_PCIDeviceGroup.InstanceID=\"KTQ:PYL_PCIDeviceGroup:1\"";
    static inline std::string const workerText =
        "//server-1/root/ktq:PYL_BaseServerWorker.InstanceID=\"KTQ:PYL_BaseServerWorker:1\"";

    /// "type value" of a property; "absent" when it is not set.
    static std::string property(CmpiCpp::CmpiInstance const& instance, char const* name) {
        for (unsigned int i = 0; i < instance.getPropertyCount(); ++i) {
            auto const [found, value] = instance.getPropertyAt(i);
            if (!(found == CmpiCpp::CmpiName(name))) continue;
            return std::string(CmpiCpp::CmpiData::typeToString(value.getType())) +
                   (value.isArray() ? " array " : " ") + value.str();
        }
        return "absent";
    }
};

/// A path as it stands inside quotes.
inline std::string escaped(std::string const& path) {
    std::string text;
    for (char const character : path) {
        if (character == '"') text += '\\';
        text += character;
    }
    return text;
}
