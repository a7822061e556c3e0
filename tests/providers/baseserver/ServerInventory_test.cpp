#include "providers/baseserver/ServerInventory.h"

#include "cimhost/objects/Objects.h"
#include "common/PYLUtil.h"
#include "tests/common/QuietResults.h"
#include "tests/platform/smbios/SmbiosImage.h"
#include "tests/providers/baseserver/BaseServerFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

using baseserver::InventorySources;
using baseserver::PciErrors;
using baseserver::PciFunction;
using baseserver::ServerFacts;
using baseserver::ServerInventory;
using std::chrono::milliseconds;
using std::chrono::seconds;

/// A machine whose data and clock a test sets.
struct ServerInventoryTest : BaseServerFixture {
    using Collection = PYL::CmpiManagedInstanceCollection;

    ServerFacts facts;
    std::vector<PciFunction> functions;
    std::chrono::steady_clock::time_point now{};
    std::map<baseserver::PciId, std::string> names;
    std::vector<std::set<baseserver::PciId>> wantedNames;
    int factReads = 0;
    int functionReads = 0;
    Logger log = host.logger();

    InventorySources sources() {
        return {[this](Logger&) {
                    ++factReads;
                    return facts;
                },
                [this] {
                    ++functionReads;
                    return functions;
                },
                [this] { return now; },
                [this](const std::set<baseserver::PciId>& wanted) {
                    wantedNames.push_back(wanted);
                    return names;
                }};
    }
    Collection collection{log};
    ServerInventory inventory{collection, log, sources()};

    struct CollectedPaths : CmpiCpp::CmpiObjectPathResult {
        void deliver(const CmpiCpp::CmpiObjectPath& path) override {
            all.push_back(cimtest::ProviderHost::show(path));
        }
        Paths all;
    };

    /// The paths of a class that a collection reports.
    Paths reported(Collection& from, const char* className) {
        CollectedPaths paths;
        from.enumInstanceNames(paths, host.context(),
                               CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", className));
        return paths.all;
    }
    Paths reported(const char* className) { return reported(collection, className); }
    static cimtest::Value valueOf(const cimtest::ProviderHost& from, Collection& instances,
                                  const char* property) {
        return from.show(
            *instances.getManagedInstance(PYL::PYLUtil::getComputerSystemPath()))[property];
    }
    cimtest::Value systemProperty(const char* name) { return valueOf(host, collection, name); }
};

TEST_F(ServerInventoryTest, ReportsNothingBeforeTheFirstRefresh) {
    EXPECT_EQ(reported("PYL_ComputerSystem"), Paths{});
    EXPECT_EQ(factReads + functionReads, 0);
}

TEST_F(ServerInventoryTest, ReportsTheServerItsChassisAndEveryFunctionWithItsLinks) {
    functions = {function(0, 2, 0), function(0x1a, 3, 1)};
    inventory.refresh();
    EXPECT_EQ(collection.size(), 8U);
    EXPECT_EQ(reported("PYL_ComputerSystem"), Paths{systemPath});
    EXPECT_EQ(reported("PYL_ComputerSystemChassis"), Paths{chassisPath});
    EXPECT_EQ(reported("PYL_PCIDevice"), (Paths{devicePath("00:02.0"), devicePath("1a:03.1")}));
    EXPECT_EQ(reported("PYL_SystemPCIDevice").size(), 2U);
    EXPECT_EQ(reported("PYL_ComputerSystemPackage").size(), 1U);
}

TEST_F(ServerInventoryTest, LooksUpTheNamesOfNewFunctionsOnly) {
    auto known = function(0, 2, 0);
    known.vendorId = 0x8086;
    known.deviceId = 0x10d3;
    functions = {known, function(0, 3, 0)};
    names = {{{0x8086, 0x10d3}, "Acme Fast Ethernet"}};
    inventory.refreshNow();
    inventory.refreshNow();
    using Wanted = std::set<baseserver::PciId>;
    EXPECT_EQ(wantedNames, (std::vector<Wanted>{{{0x8086, 0x10d3}}, {}}));
    const auto device =
        host.show(*collection.getManagedInstance(PYL::PYLUtil::getPCIDevicePath(0, 0, 2, 0)));
    EXPECT_EQ(device["ElementName"], "Unknown device: Acme Fast Ethernet");
}

TEST_F(ServerInventoryTest, ReadsAgainOnlyWhatIsNoLongerFresh) {
    inventory.refresh();
    inventory.refresh();
    EXPECT_EQ(std::pair(factReads, functionReads), std::pair(1, 1));
    now += ServerInventory::devicesFreshness - milliseconds(1);
    inventory.refresh();
    EXPECT_EQ(std::pair(factReads, functionReads), std::pair(1, 1));
    now += milliseconds(1);
    inventory.refresh();
    EXPECT_EQ(std::pair(factReads, functionReads), std::pair(1, 2));
    now += ServerInventory::factsFreshness;
    inventory.refresh();
    EXPECT_EQ(std::pair(factReads, functionReads), std::pair(2, 3));
}

TEST_F(ServerInventoryTest, KeepsTheVeryInstancesOfWhatStaysTheSame) {
    functions = {function(0, 2, 0)};
    inventory.refresh();
    std::vector<PYL::CmpiManagedInstance*> before;
    for (unsigned int i = 0; i < 6; ++i) before.push_back(collection.getManagedInstance(i));
    now += seconds(100);
    inventory.refresh();
    ASSERT_EQ(collection.size(), 6U);
    for (unsigned int i = 0; i < 6; ++i) {
        EXPECT_EQ(collection.getManagedInstance(i), before[i]);
    }
}

TEST_F(ServerInventoryTest, DropsAFunctionThatVanished) {
    functions = {function(0, 2, 0), function(0, 3, 0)};
    inventory.refresh();
    functions.erase(functions.begin());
    now += seconds(2);
    inventory.refresh();
    EXPECT_EQ(reported("PYL_PCIDevice"), Paths{devicePath("00:03.0")});
    EXPECT_EQ(reported("PYL_SystemPCIDevice").size(), 1U);
    EXPECT_EQ(collection.size(), 6U);  // hidden ones are purged
}

TEST_F(ServerInventoryTest, TakesUpAFunctionThatComesBack) {
    functions = {function(0, 2, 0)};
    inventory.refresh();
    const auto saved = std::exchange(functions, {});
    now += seconds(2);
    inventory.refresh();
    EXPECT_EQ(reported("PYL_PCIDevice"), Paths{});
    functions = saved;
    now += seconds(2);
    inventory.refresh();
    EXPECT_EQ(reported("PYL_PCIDevice").size(), 1U);
    EXPECT_EQ(collection.size(), 6U);
}

TEST_F(ServerInventoryTest, ReplacesAFunctionThatChanged) {
    functions = {function(0, 2, 0)};
    inventory.refresh();
    functions[0].driver = "vfio-pci";
    now += seconds(2);
    inventory.refresh();
    EXPECT_EQ(reported("PYL_PCIDevice").size(), 1U);
    EXPECT_EQ(collection.size(), 6U);
    auto* const device = collection.getManagedInstance(4U);
    EXPECT_EQ(host.show(*device)["DriverName"], "vfio-pci");
}

TEST_F(ServerInventoryTest, ReplacesTheServerWhenItsFactsChange) {
    facts.productName = "old";
    inventory.refresh();
    facts.productName = "new";
    inventory.refresh();
    EXPECT_EQ(systemProperty("Model"), "old");
    now += seconds(60);
    inventory.refresh();
    EXPECT_EQ(systemProperty("Model"), "new");
    EXPECT_EQ(collection.size(), 4U);
}

TEST_F(ServerInventoryTest, TakesTheLastOfTwoReportsOfOneFunction) {
    functions = {function(0, 2, 0), function(0, 2, 0)};
    functions[1].driver = "second";
    inventory.refresh();
    EXPECT_EQ(reported("PYL_PCIDevice").size(), 1U);
    EXPECT_EQ(collection.size(), 6U);
}

TEST_F(ServerInventoryTest, ReadsAtOnceWhenItIsToldTo) {
    inventory.refresh();
    inventory.refreshNow();
    EXPECT_EQ(std::pair(factReads, functionReads), std::pair(2, 2));
}

TEST_F(ServerInventoryTest, GroupsTheFunctionsUnderTheirWorstState) {
    EXPECT_EQ(inventory.groupStatus(), PYL::statusUnknown);
    functions = {function(0, 2, 0), function(0, 3, 0), function(0, 4, 0)};
    struct Step {
        std::optional<PciErrors> errors;
        PYL::operationalStatus worst;
    };
    for (const auto& step : {Step{std::nullopt, PYL::statusUnknown}, Step{{{0, 0}}, PYL::statusOK},
                             Step{{{0, 3}}, PYL::statusDegraded}, Step{{{1, 0}}, PYL::statusError},
                             Step{{{0, 0}}, PYL::statusOK}}) {
        functions[1].errors = step.errors;
        inventory.refreshNow();
        EXPECT_EQ(inventory.groupStatus(), step.worst);
        EXPECT_EQ(reported("PYL_PCIDeviceGroup"), Paths{groupPath});
    }
}

TEST_F(ServerInventoryTest, ReadsAgainAtOnceAfterAReadThatFailed) {
    bool factsFail = true;
    bool functionsFail = true;
    auto failing = sources();
    failing.facts = [&](Logger&) { return factsFail ? throw std::runtime_error("facts") : facts; };
    failing.pciFunctions = [&] {
        return functionsFail ? throw std::runtime_error("functions") : functions;
    };
    Collection instances(log);
    ServerInventory unlucky(instances, log, failing);
    EXPECT_THROW(unlucky.refresh(), std::runtime_error);
    factsFail = false;
    EXPECT_THROW(unlucky.refresh(), std::runtime_error);
    EXPECT_EQ(reported(instances, "PYL_ComputerSystem").size(), 1U);
    functionsFail = false;
    functions = {function(0, 2, 0)};
    unlucky.refresh();
    EXPECT_EQ(reported(instances, "PYL_PCIDevice").size(), 1U);
    EXPECT_EQ(instances.size(), 6U);
}

/// Two machines that differ in everything that can differ.
struct ServerInventoryMemory : ServerInventoryTest {
    void machineIs(int number) {
        facts.productName = "model " + std::to_string(number);
        functions = {function(0, 2, 0), function(0, 3, number)};
        functions[0].driver = "driver " + std::to_string(number);
    }
};

TEST_F(ServerInventoryMemory, FindsItsWayBackAfterEveryAllocationThatFails) {
    int nth = 0;
    do {
        ++nth;
        Collection instances(log);
        ServerInventory tested(instances, log, sources());
        machineIs(1);
        tested.refresh();
        machineIs(2);
        now += seconds(100);
        {
            const cimtest::FailingAllocation failing(nth, nth % 2 == 0);
            try {
                tested.refresh();
            } catch (const std::bad_alloc&) {
            }
        }
        // Either machine, and neither twice.
        EXPECT_EQ(reported(instances, "PYL_ComputerSystem").size(), 1U) << nth;
        EXPECT_GE(reported(instances, "PYL_PCIDevice").size(), 2U) << nth;
        // Back to what it was, which a half-done refresh must not take for fresh.
        const bool failed = cimtest::allocationHasFailed();
        machineIs(1);
        now += seconds(100);
        tested.refresh();
        const auto devices = reported(instances, "PYL_PCIDevice");
        EXPECT_THAT(devices,
                    testing::UnorderedElementsAre(devicePath("00:02.0"), devicePath("00:03.1")))
            << nth;
        EXPECT_EQ(reported(instances, "PYL_ComputerSystem").size(), 1U) << nth;
        EXPECT_EQ(instances.size(), 8U) << nth;
        if (!failed) break;
    } while (nth < 1000 && !HasFailure());
    EXPECT_GT(nth, 10);
}

TEST_F(ServerInventoryTest, IsRefreshedAndAskedFromSeveralThreadsAtOnce) {
    std::mutex mutex;
    int turn = 0;
    Collection instances(log);
    ServerInventory shared(instances, log,
                           {[&](Logger&) {
                                const std::lock_guard lock(mutex);
                                ServerFacts changing;
                                changing.productName = std::to_string(++turn);
                                return changing;
                            },
                            [&] {
                                const std::lock_guard lock(mutex);
                                return std::vector{function(0, turn % 4, 0), function(1, 0, 0)};
                            },
                            [&] {
                                const std::lock_guard lock(mutex);
                                return now += seconds(30);
                            }});
    const auto context = host.context();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int requests = 0; requests < 25; ++requests) {
                const cimhost::CallScope scope;
                shared.refresh();
                CountedPaths devices;
                CountedInstances systems;
                instances.enumInstanceNames(
                    devices, context,
                    CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", "PYL_PCIDevice"));
                instances.getInstance(systems, context, PYL::PYLUtil::getComputerSystemPath(),
                                      nullptr);
                EXPECT_GE(devices.count, 1);
                EXPECT_LE(systems.count, 1);
                CountedPaths far;
                instances.associatorNames(far, context, PYL::PYLUtil::getComputerSystemPath(), "",
                                          "", "", "");
                EXPECT_GE(far.count, 1);
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(reported(instances, "PYL_ComputerSystem").size(), 1U);
    EXPECT_EQ(reported(instances, "PYL_PCIDevice").size(), 2U);
}

/// The tables that the kernel exports, and how often their file is opened.
class CountedTables : public SmbiosKernelTables {
public:
    using SmbiosKernelTables::SmbiosKernelTables;
    Bytes table(std::uint64_t address, std::size_t length) const override {
        ++opened;
        return SmbiosKernelTables::table(address, length);
    }
    mutable int opened = 0;
};

/// An inventory that reads the firmware's tables itself.
struct FirmwareInventoryTest : ServerInventoryTest {
    FirmwareInventoryTest() { SmBios::setSource(tables); }

    void firmwareIs(const std::string& name) const {
        const Bytes dump = readDump(name);
        const std::string bytes(dump.begin(), dump.end());
        folder.write("smbios_entry_point", bytes.substr(0, SmbiosImage::tableOffset));
        folder.write("DMI", bytes.substr(SmbiosImage::tableOffset));
    }
    /// After a refresh that reads everything again.
    cimtest::Value systemNow(const char* name) {
        ofFirmware.refreshNow();
        return valueOf(host, instances, name);
    }

    cimhost::TemporaryFolder folder;
    std::shared_ptr<CountedTables> tables = std::make_shared<CountedTables>(folder.path());
    Collection instances{log};
    ServerInventory ofFirmware{
        instances, log, {.pciFunctions = [] { return std::vector<PciFunction>(); }}};
};

TEST_F(FirmwareInventoryTest, OpensTheTableOnceForEachRefresh) {
    for (const auto* name : {"empty", "wavek", "wavek"}) {
        firmwareIs(name);
        tables->opened = 0;
        ofFirmware.refreshNow();
        EXPECT_EQ(tables->opened, 1) << name;
    }
}

TEST_F(FirmwareInventoryTest, SeesATableThatChangedSinceTheLastRefresh) {
    firmwareIs("wavek");
    EXPECT_EQ(systemNow("Model"), "Server WaveK 400");
    EXPECT_EQ(systemNow("ServerSystemID"), "KTQ-K-0002");
    EXPECT_EQ(systemNow("AgentlessOnly"), true);
    firmwareIs("wavej");
    EXPECT_EQ(systemNow("Model"), "Server Wave 300 J");
    EXPECT_EQ(systemNow("ServerSystemID"), "KTQ-J-0001");
    EXPECT_EQ(systemNow("AgentlessOnly"), false);
}

}  // namespace
