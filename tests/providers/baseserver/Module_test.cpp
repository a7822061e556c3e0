// The module as an object manager loads it: through its C entry points alone.

#include "cimhost/objects/Objects.h"
#include "common/PYLUtil.h"
#include "platform/smbios/SmBios.h"
#include "tests/providers/baseserver/BaseServerFixture.h"
#include "tests/support/FreshProcess.h"

#include <dlfcn.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Results : cimhost::ResultSink {
    void instance(const cimhost::Instance& instance) override {
        classes.push_back(instance.path.className);
    }
    void path(const cimhost::ObjectPath& path) override { classes.push_back(path.className); }
    void data(const cimhost::Value&) override { ++values; }
    std::vector<std::string> classes;
    int values = 0;
};

struct BaseServerModule : BaseServerFixture {
    using CreateInstanceMI = CMPIInstanceMI* (*)(const CMPIBroker*, const CMPIContext*,
                                                 CMPIStatus*);
    using CreateAssociationMI = CMPIAssociationMI* (*)(const CMPIBroker*, const CMPIContext*,
                                                       CMPIStatus*);
    using CreateMethodMI = CMPIMethodMI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);

    BaseServerModule() {
        SmBios::setSource(std::make_shared<SmbiosDumpFile>(PYL_SMBIOS_DUMPS "/wavek.bin"));
    }
    ~BaseServerModule() override { SmBios::setSource(nullptr); }

    template <typename Function>
    Function entryPoint(const char* name) {
        const auto function = reinterpret_cast<Function>(::dlsym(module.get(), name));
        EXPECT_NE(function, nullptr) << name;
        return function;
    }
    const CMPIContext* context() { return host.context().toCMPI(); }
    const CMPIResult* result() { return cimhost::makeResult(broker, results); }
    const CMPIObjectPath* classPath(const char* className) {
        path = CmpiCpp::makeCmpiObjectPath(host.broker(), "root/ktq", className);
        return path.toCMPI();
    }

    // What the module reads of the firmware, the library keeps: each runs in a process of its own.
    void answersRequests();
    void runsMethods();
    void startsWhenItMust();
    void timesItsRequests();
    /// The instance MI, made by its entry point.
    CMPIInstanceMI* instanceMI() {
        CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
        return entryPoint<CreateInstanceMI>("PYL_BaseServerProvider_Create_InstanceMI")(
            host.real(), context(), &status);
    }

    struct Close {
        void operator()(void* handle) const { ::dlclose(handle); }
    };
    std::unique_ptr<void, Close> module{::dlopen(PYL_BASE_SERVER_MODULE, RTLD_NOW | RTLD_LOCAL)};
    const cimhost::Broker& broker = cimhost::Broker::of(host.real());
    Results results;
    CmpiCpp::CmpiObjectPath path;
};

TEST_F(BaseServerModule, HasTheEntryPointsOfItsProvider) {
    ASSERT_NE(module, nullptr) << ::dlerror();
    for (const auto* kind : {"Instance", "Association", "Method", "Indication"}) {
        const auto name = std::string("PYL_BaseServerProvider_Create_") + kind + "MI";
        EXPECT_NE(::dlsym(module.get(), name.c_str()), nullptr) << name;
    }
}

void BaseServerModule::answersRequests() {
    ASSERT_NE(module, nullptr) << ::dlerror();
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    auto* const instances = entryPoint<CreateInstanceMI>(
        "PYL_BaseServerProvider_Create_InstanceMI")(host.real(), context(), &status);
    ASSERT_NE(instances, nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(PYL::PYLUtil::getBroker(), host.real());

    status = instances->ft->enumerateInstances(instances, context(), result(),
                                               classPath("PYL_ComputerSystem"), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(results.classes, std::vector<std::string>{"PYL_ComputerSystem"});

    auto* const associations = entryPoint<CreateAssociationMI>(
        "PYL_BaseServerProvider_Create_AssociationMI")(host.real(), context(), &status);
    ASSERT_NE(associations, nullptr);
    results.classes.clear();
    path = PYL::PYLUtil::getChassisPath();
    status = associations->ft->associatorNames(associations, context(), result(), path.toCMPI(),
                                               nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(results.classes, std::vector<std::string>{"PYL_ComputerSystem"});

    path = PYL::PYLUtil::getPCIDevicePath(0, 255, 31, 7);
    status = instances->ft->getInstance(instances, context(), result(), path.toCMPI(), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);

    EXPECT_EQ(associations->ft->cleanup(associations, context(), 1).rc, CMPI_RC_OK);
    EXPECT_EQ(instances->ft->cleanup(instances, context(), 1).rc, CMPI_RC_OK);
}

TEST_F(BaseServerModule, AnswersRequestsForInstancesAndAssociations) {
    inFreshProcess([this] { answersRequests(); });
}

void BaseServerModule::runsMethods() {
    ASSERT_NE(module, nullptr) << ::dlerror();
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    auto* const methods = entryPoint<CreateMethodMI>("PYL_BaseServerProvider_Create_MethodMI")(
        host.real(), context(), &status);
    ASSERT_NE(methods, nullptr);
    status = methods->ft->invokeMethod(
        methods, context(), result(), classPath("PYL_ComputerSystem"), "Reset",
        cimhost::makeArgs(broker, {}), cimhost::makeArgs(broker, {}));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_METHOD_NOT_FOUND);
    status = methods->ft->invokeMethod(
        methods, context(), result(), classPath("PYL_BaseServerWorker"), "PerformWork",
        cimhost::makeArgs(broker, {}), cimhost::makeArgs(broker, {}));
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(results.values, 1);
    EXPECT_EQ(methods->ft->cleanup(methods, context(), 1).rc, CMPI_RC_OK);
}

TEST_F(BaseServerModule, RunsTheMethodsItHasAndRefusesOthers) {
    inFreshProcess([this] { runsMethods(); });
}

/// The lines that the module wrote to standard error since the last call.
struct StandardError {
    StandardError() { testing::internal::CaptureStderr(); }
    std::string take() {
        auto text = testing::internal::GetCapturedStderr();
        testing::internal::CaptureStderr();
        return text;
    }
    ~StandardError() { testing::internal::GetCapturedStderr(); }
};

void BaseServerModule::startsWhenItMust() {
    StandardError log;
    auto* const instances = instanceMI();
    ASSERT_NE(instances, nullptr);
    EXPECT_EQ(instances->ft
                  ->enumerateInstances(instances, context(), result(),
                                       classPath("PYL_BaseServerWorker"), nullptr)
                  .rc,
              CMPI_RC_OK);
    EXPECT_EQ(results.classes, std::vector<std::string>{"PYL_BaseServerWorker"});
    EXPECT_EQ(log.take(), "");
    EXPECT_EQ(instances->ft->cleanup(instances, context(), 0).rc, CMPI_RC_DO_NOT_UNLOAD);

    instances->ft->enumerateInstanceNames(instances, context(), result(),
                                          classPath("PYL_PCIDeviceGroup"));
    EXPECT_EQ(results.classes.back(), "PYL_PCIDeviceGroup");
    EXPECT_NE(log.take().find("PYL_BaseServer: information: provider cxtor()\n"),
              std::string::npos);
    EXPECT_EQ(instances->ft->cleanup(instances, context(), 1).rc, CMPI_RC_OK);
}

TEST_F(BaseServerModule, StartsWithTheFirstRequestThatTheWorkerInstanceCannotAnswer) {
    inFreshProcess([this] { startsWhenItMust(); });
}

void BaseServerModule::timesItsRequests() {
    std::filesystem::create_symlink("/etc/passwd", RedirectedFiles::real("/tmp/PYLPerfmon"));
    StandardError log;
    auto* const instances = instanceMI();
    ASSERT_NE(instances, nullptr);
    instances->ft->enumerateInstanceNames(instances, context(), result(),
                                          classPath("PYL_PCIDeviceGroup"));
    instances->ft->cleanup(instances, context(), 1);
    const auto lines = log.take();
    for (const auto* operation : {"constructor", "enumInstanceNames", "cleanup", "destructor"}) {
        EXPECT_NE(lines.find(std::string("PYL_BaseServer:perfmon: information: ") + operation +
                             " completed in "),
                  std::string::npos)
            << lines;
    }
}

TEST_F(BaseServerModule, TimesItsRequestsWhenRootHasAskedForIt) {
    inFreshProcess([this] { timesItsRequests(); });
}

}  // namespace
