#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/LoggedProvider.h"
#include "common/PYLUtil.h"

#include <fstream>

using namespace CmpiCpp;

namespace {

CmpiBroker broker() {
    return CmpiBroker(PYL::PYLUtil::getBroker());
}

class Uptime : public PYL::CmpiManagedInstance {
public:
    CmpiName getClassName() override { return "PYL_Uptime"; }

    CmpiObjectPath getPath() override {
        auto path = makeCmpiObjectPath(broker(), PYL::BaseServerNameSpace, "PYL_Uptime");
        path.setHost(PYL::PYLUtil::getHostName());
        path.addKey("InstanceID", "KTQ:Uptime");
        return path;
    }

    CmpiInstance getInstance() override {
        auto instance = makeCmpiInstance(broker(), getPath());
        instance.setProperty("InstanceID", "KTQ:Uptime");
        double seconds = 0;
        if (std::ifstream("/proc/uptime") >> seconds) {
            instance.setProperty("Seconds", static_cast<unsigned long long>(seconds));
        }
        return instance;
    }
};

class UptimeProvider : public CmpiInstanceProvider {
public:
    UptimeProvider(const CmpiBroker& broker, Logger& log) : _broker(broker), _instances(log) {
        _instances.createInstance(new Uptime);
    }

    CMPIBroker* getBroker() override { return _broker.toRawCMPI(); }

    void enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& path,
                           CmpiObjectPathResult& result) override {
        _instances.enumInstanceNames(result, context, path);
    }
    void enumInstances(const CmpiContext& context, const CmpiObjectPath& path,
                       const char** properties, CmpiInstanceResult& result) override {
        _instances.enumInstances(result, context, path, properties);
    }
    void getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                     const char** properties, CmpiInstanceResult& result) override {
        if (!_instances.getInstance(result, context, path, properties)) {
            throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
        }
    }

private:
    CmpiBroker _broker;
    PYL::CmpiManagedInstanceCollection _instances;
};

CmpiProvider* makeInner(const CmpiBroker& broker, Logger& log) {
    return new UptimeProvider(broker, log);
}

CmpiProvider* makeProvider(const CmpiBroker& broker, const CMPIContext*) {
    PYL::PYLUtil::setBroker(broker);
    Logger log = hostedLogger("Uptime");
    return new PYL::LoggedProvider(broker, log, makeInner);
}

}  // namespace

PYL_CMPI_PROVIDER(UptimeProvider, makeProvider)
