// The module as an object manager loads it, by its registration.

#include "common/PYLUtil.h"
#include "tests/support/FreshProcess.h"
#include "tests/support/RedirectedFiles.h"

#include <gtest/gtest.h>
#include <pylcommon/testing.h>

#include <filesystem>

namespace {

using cimtest::failureOf;
using cimtest::Path;

constexpr const char* moduleName = "pylBaseServer";

/// The module on its server. What it reads of the firmware, the library keeps: each is in a process
/// of its own.
struct BaseServerModule {
    BaseServerModule() {
        machine.firmwareIs(PYL_SMBIOS_DUMPS "/wavek.bin");
        host.load(PYL_SCHEMA_FOLDER "/pylBaseServer.registration", PYL_BASE_SERVER_FOLDER);
    }
    const Path system{"PYL_ComputerSystem",
                      {{"CreationClassName", "PYL_ComputerSystem"}, {"Name", "server-1"}}};
    const Path chassis{"PYL_ComputerSystemChassis",
                       {{"CreationClassName", "PYL_ComputerSystemChassis"}, {"Tag", "1"}}};

    RedirectedFiles files;  // the provider keeps a count in a store
    cimtest::FakeHost machine;
    cimtest::ProviderHost host{"root/ktq",
                               {"base/base.mof", "PYL_BaseServer.mof", "PYL_Indications.mof"}};
};

TEST(BaseServerModule, AnswersRequestsForInstancesAndAssociations) {
    inFreshProcess([] {
        BaseServerModule module;
        EXPECT_EQ(module.host.names("PYL_ComputerSystem"), std::vector<Path>{module.system});
        EXPECT_EQ(module.host.get(module.system)["Model"], "Server WaveK 400");
        EXPECT_EQ(PYL::PYLUtil::getBroker(), module.host.handle());
        EXPECT_EQ(module.host.associatorNames(module.chassis), std::vector<Path>{module.system});
        EXPECT_EQ(
            failureOf([&] { module.host.get("PYL_PCIDeviceGroup.InstanceID=\"x\""); }).substr(0, 2),
            "6 ");
    });
}

TEST(BaseServerModule, RunsTheMethodsItHasAndRefusesOthers) {
    inFreshProcess([] {
        BaseServerModule module;
        EXPECT_EQ(failureOf([&] { module.host.invoke(module.system, "Reset"); }).substr(0, 3),
                  "17 ");
        const Path worker{"PYL_BaseServerWorker.InstanceID=\"KTQ:PYL_BaseServerWorker:1\""};
        EXPECT_EQ(module.host.invoke(worker, "PerformWork").returned, 0);
    });
}

TEST(BaseServerModule, StartsWithTheFirstRequestThatTheWorkerInstanceCannotAnswer) {
    inFreshProcess([] {
        BaseServerModule module;
        EXPECT_EQ(module.host.enumerate("PYL_BaseServerWorker").size(), 1U);
        EXPECT_EQ(module.host.log().countOf(""), 0U);
        EXPECT_FALSE(module.host.unload(moduleName));
        EXPECT_EQ(module.host.names("PYL_PCIDeviceGroup").size(), 1U);
        EXPECT_EQ(module.host.log().countOf("PYL_BaseServer: provider cxtor()"), 1U);
    });
}

TEST(BaseServerModule, TimesItsRequestsWhenRootHasAskedForIt) {
    inFreshProcess([] {
        BaseServerModule module;
        std::filesystem::create_symlink("/etc/passwd", RedirectedFiles::real("/tmp/PYLPerfmon"));
        module.host.names("PYL_PCIDeviceGroup");
        module.host.end();
        for (const std::string operation :
             {"constructor", "enumInstanceNames", "cleanup", "destructor"}) {
            EXPECT_EQ(module.host.log().countOf("information PYL_BaseServer:perfmon: " + operation +
                                                " completed in "),
                      1U)
                << operation;
        }
    });
}

}  // namespace
