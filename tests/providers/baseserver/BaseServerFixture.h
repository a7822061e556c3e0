#pragma once

#include "providers/baseserver/PciBus.h"
#include "tests/support/RedirectedFiles.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <string>

/// A host that knows the classes of the module, on a bare machine.
struct BaseServerFixture : testing::Test {
    using Path = cimtest::Path;
    using Paths = std::vector<Path>;

    RedirectedFiles files;  // the provider keeps a count in a store
    cimtest::FakeHost machine;
    cimtest::ProviderHost host{"root/ktq",
                               {"base/base.mof", "PYL_BaseServer.mof", "PYL_Indications.mof"}};

    static baseserver::PciFunction function(int bus, int device, int number) {
        baseserver::PciFunction made;
        made.address = {0, bus, device, number};
        return made;
    }
    static Path devicePath(const std::string& location) {
        return {"PYL_PCIDevice",
                {{"CreationClassName", "PYL_PCIDevice"},
                 {"SystemCreationClassName", "PYL_ComputerSystem"},
                 {"SystemName", "server-1"},
                 {"DeviceID", "KTQ:PYL_PCIDevice:0000:" + location}},
                "root/ktq"};
    }
    const Path systemPath{"PYL_ComputerSystem",
                          {{"CreationClassName", "PYL_ComputerSystem"}, {"Name", "server-1"}},
                          "root/ktq"};
    const Path chassisPath{"PYL_ComputerSystemChassis",
                           {{"CreationClassName", "PYL_ComputerSystemChassis"}, {"Tag", "1"}},
                           "root/ktq"};
    const Path groupPath{
        "//server-1/root/ktq:PYL_PCIDeviceGroup.InstanceID=\"KTQ:PYL_PCIDeviceGroup:1\""};
    const Path workerPath{
        "//server-1/root/ktq:PYL_BaseServerWorker.InstanceID=\"KTQ:PYL_BaseServerWorker:1\""};
};
