#pragma once

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"
#include "providers/baseserver/PciBus.h"
#include "providers/baseserver/ServerFacts.h"
#include "testing/cimhost/testing/HostName.h"
#include "tests/support/RedirectedFiles.h"
#include "tests/support/TestBroker.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

    CmpiCpp::CmpiObjectPath systemPath() const {
        return host.path("PYL_ComputerSystem",
                         {{"CreationClassName", "PYL_ComputerSystem"}, {"Name", "server-1"}});
    }
    CmpiCpp::CmpiObjectPath chassisPath() const {
        return host.path("PYL_ComputerSystemChassis",
                         {{"CreationClassName", "PYL_ComputerSystemChassis"}, {"Tag", "1"}});
    }
    CmpiCpp::CmpiObjectPath devicePath(const std::string& location) const {
        return host.path("PYL_PCIDevice", {{"CreationClassName", "PYL_PCIDevice"},
                                           {"SystemCreationClassName", "PYL_ComputerSystem"},
                                           {"SystemName", "server-1"},
                                           {"DeviceID", "KTQ:PYL_PCIDevice:0000:" + location}});
    }
    std::string deviceText(const std::string& location) const { return devicePath(location).str(); }
    const std::string systemText = systemPath().str();
    const std::string chassisText = chassisPath().str();

    static inline const std::string groupText =
        "//server-1/root/ktq:PYL_PCIDeviceGroup.InstanceID=\"KTQ:PYL_PCIDeviceGroup:1\"";
    static inline const std::string workerText =
        "//server-1/root/ktq:PYL_BaseServerWorker.InstanceID=\"KTQ:PYL_BaseServerWorker:1\"";

    /// "type value" of a property; "absent" when it is not set.
    static std::string property(const CmpiCpp::CmpiInstance& instance, const char* name) {
        for (unsigned int i = 0; i < instance.getPropertyCount(); ++i) {
            const auto [found, value] = instance.getPropertyAt(i);
            if (!(found == CmpiCpp::CmpiName(name))) continue;
            return std::string(CmpiCpp::CmpiData::typeToString(value.getType())) +
                   (value.isArray() ? " array " : " ") + value.str();
        }
        return "absent";
    }
};

/// A path as it stands inside quotes.
inline std::string escaped(const std::string& path) {
    std::string text;
    for (const char character : path) {
        if (character == '"') text += '\\';
        text += character;
    }
    return text;
}
