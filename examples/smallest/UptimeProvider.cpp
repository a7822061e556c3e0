#include "cmpicpp/CmpiModule.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/LoggedModule.h"
#include "toolkit/Properties.h"

#include <fstream>

namespace {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

std::optional<unsigned long long> secondsUp() {
    double seconds = 0;
    if (!(std::ifstream("/proc/uptime") >> seconds)) return std::nullopt;
    return static_cast<unsigned long long>(seconds);
}

class Uptime : public PYL::CmpiManagedInstance {
public:
    CmpiName getClassName() override { return "PYL_Uptime"; }
    CmpiObjectPath getPath() override {
        return PYL::makeLocalPath("PYL_Uptime", {{"InstanceID", "KTQ:Uptime"}});
    }
    CmpiInstance getInstance() override {
        auto instance = PYL::makeInstanceAt(getPath());
        PYL::setKnown(instance, "Seconds", secondsUp());
        return instance;
    }
};

class UptimeProvider : public PYL::CollectionProvider {
public:
    UptimeProvider(const CmpiBroker& broker, Logger& log) : CollectionProvider(broker, log) {
        add(_instances, std::make_unique<Uptime>());
    }
};

CmpiCpp::CmpiProvider* makeProvider(const CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeLoggedProvider<UptimeProvider>(broker, "Uptime");
}

}  // namespace

PYL_CMPI_PROVIDER(UptimeProvider, makeProvider)
