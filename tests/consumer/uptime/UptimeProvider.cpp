#include "cmpicpp/CmpiModule.h"
#include "common/CmpiManagedInstance.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/Properties.h"

#include <fstream>
#include <memory>
#include <optional>

namespace {

using CmpiCpp::CmpiBroker;

std::optional<unsigned long long> secondsUp() {
    double seconds = 0;
    if (!(std::ifstream("/proc/uptime") >> seconds)) return std::nullopt;
    return static_cast<unsigned long long>(seconds);
}

class Uptime : public PYL::CmpiManagedInstance {
public:
    CmpiCpp::CmpiName getClassName() override { return "PYL_Uptime"; }

    CmpiCpp::CmpiObjectPath getPath() override {
        return PYL::makeLocalPath("PYL_Uptime", {{"InstanceID", "KTQ:Uptime"}});
    }

    CmpiCpp::CmpiInstance getInstance() override {
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

CmpiCpp::CmpiProvider* makeInner(const CmpiBroker& broker, Logger& log) {
    return new UptimeProvider(broker, log);
}

CmpiCpp::CmpiProvider* makeProvider(const CmpiBroker& broker, const CMPIContext*) {
    PYL::PYLUtil::setBroker(broker);
    Logger log = hostedLogger("Uptime");
    return new PYL::LoggedProvider(broker, log, makeInner);
}

}  // namespace

PYL_CMPI_PROVIDER(UptimeProvider, makeProvider)
