#include "bench/library/WrapperProvider.h"

#include "bench/library/PlainPath.h"
#include "bench/library/Stage.h"
#include "cmpicpp/CmpiAssociationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/PYLUtil.h"
#include "platform/logger/StandardErrorSink.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

namespace {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;
using CmpiCpp::CmpiStatus;

CmpiBroker broker() { return CmpiBroker(stageBroker().handle()); }

class Device : public PYL::CmpiManagedInstance {
public:
    explicit Device(WrapperDevice device) : _device(std::move(device)) {}

    CmpiObjectPath getPath() override { return _device.path(); }
    CmpiInstance getInstance() override { return _device.instance(); }
    CmpiName getClassName() override { return _device.className; }

private:
    WrapperDevice _device;
};

CmpiObjectPath systemPath(const std::string& host) {
    auto path = CmpiCpp::makeCmpiObjectPath(broker(), stageNameSpace, benchSystemClass);
    path.setHost(host);
    path.addKey("CreationClassName", benchSystemClass);
    path.addKey("Name", host);
    return path;
}

class Link : public PYL::CmpiManagedInstanceAssociation {
public:
    explicit Link(WrapperDevice device) : _device(std::move(device)) {}

    CmpiObjectPath getPath() override {
        auto path = CmpiCpp::makeCmpiObjectPath(broker(), stageNameSpace, benchLinkClass);
        path.setHost(_device.host);
        path.addKey("GroupComponent", systemPath(_device.host));
        path.addKey("PartComponent", _device.path());
        return path;
    }
    CmpiInstance getInstance() override { return CmpiCpp::makeCmpiInstance(broker(), getPath()); }
    CmpiName getClassName() override { return benchLinkClass; }
    CmpiObjectPath getAssociatedPath(const CmpiObjectPath& path) override {
        return path == systemPath(_device.host) ? _device.path() : CmpiObjectPath();
    }

private:
    WrapperDevice _device;
};

struct Shape {
    std::size_t devices;
    std::size_t links;
};

WrapperDevice deviceAt(std::size_t index) {
    char id[16];
    std::snprintf(id, sizeof id, "%08zu", index);
    return {PYL::PYLUtil::getHostName(), stageNameSpace, benchDeviceClass, id,
            static_cast<unsigned>(index)};
}

class CollectionProvider : public CmpiCpp::CmpiInstanceProvider,
                           public CmpiCpp::CmpiAssociationProvider {
public:
    explicit CollectionProvider(Shape shape)
        : _log("bench", std::make_shared<StandardErrorSink>(), LogLevel::error), _things(_log) {
        for (std::size_t i = 0; i < shape.devices; ++i) {
            _things.createInstance(new Device(deviceAt(i)));
        }
        for (std::size_t i = shape.devices - shape.links; i < shape.devices; ++i) {
            _things.createInstance(new Link(deviceAt(i)));
        }
    }

    CMPIBroker* getBroker() override { return broker().toRawCMPI(); }

    void enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& classPath,
                           CmpiObjectPathResult& result) override {
        _things.enumInstanceNames(result, context, classPath);
    }
    void enumInstances(const CmpiContext& context, const CmpiObjectPath& classPath,
                       const char** properties, CmpiInstanceResult& result) override {
        _things.enumInstances(result, context, classPath, properties);
    }
    void getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                     const char** properties, CmpiInstanceResult& result) override {
        if (!_things.getInstance(result, context, path, properties)) {
            throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND);
        }
    }

    void associators(const CmpiContext& context, const CmpiObjectPath& path,
                     const CmpiName& associationClass, const CmpiName& resultClass,
                     const CmpiName& role, const CmpiName& resultRole, const char** properties,
                     CmpiInstanceResult& result) override {
        _things.associators(result, context, path, associationClass, resultClass, role, resultRole,
                            properties);
    }
    void associatorNames(const CmpiContext& context, const CmpiObjectPath& path,
                         const CmpiName& associationClass, const CmpiName& resultClass,
                         const CmpiName& role, const CmpiName& resultRole,
                         CmpiObjectPathResult& result) override {
        _things.associatorNames(result, context, path, associationClass, resultClass, role,
                                resultRole);
    }
    void references(const CmpiContext& context, const CmpiObjectPath& path,
                    const CmpiName& resultClass, const CmpiName& role, const char** properties,
                    CmpiInstanceResult& result) override {
        _things.references(result, context, path, resultClass, role, properties);
    }
    void referenceNames(const CmpiContext& context, const CmpiObjectPath& path,
                        const CmpiName& resultClass, const CmpiName& role,
                        CmpiObjectPathResult& result) override {
        _things.referenceNames(result, context, path, resultClass, role);
    }

private:
    Logger _log;
    PYL::CmpiManagedInstanceCollection _things;
};

// A factory has no argument of its own.
Shape nextShape;

CmpiCpp::CmpiProvider* makeProvider(const CmpiBroker&, const CMPIContext*) {
    return new CollectionProvider(nextShape);
}

template <typename MI>
MI* required(MI* mi) {
    if (!mi) throw std::runtime_error("the provider could not be made");
    return mi;
}

}  // namespace

CmpiObjectPath WrapperDevice::path() const {
    auto path = CmpiCpp::makeCmpiObjectPath(broker(), nameSpace.c_str(), className.c_str());
    path.setHost(host);
    path.addKey("SystemCreationClassName", benchSystemClass);
    path.addKey("SystemName", host);
    path.addKey("CreationClassName", className);
    path.addKey("DeviceID", deviceId);
    return path;
}

CmpiInstance WrapperDevice::instance() const {
    auto instance = CmpiCpp::makeCmpiInstance(broker(), path());
    instance.setProperty("ElementName", deviceId);
    instance.setProperty("Caption", "a device for measuring");
    instance.setProperty("HealthState", static_cast<unsigned short>(5));
    instance.setProperty("EnabledState", static_cast<unsigned short>(2));
    instance.setProperty("Slot", slot);
    instance.setProperty("IsLocked", true);
    return instance;
}

WrapperProvider::WrapperProvider(std::size_t devices, std::size_t links)
    : _module("BenchProvider", makeProvider) {
    nextShape = {devices, links};
    const Call call(benchDeviceClass);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIBroker* const handle = stageBroker().handle();
    _instanceMI = required(_module.createInstanceMI(handle, call.context, &status));
    _associationMI = required(_module.createAssociationMI(handle, call.context, &status));
}

WrapperProvider::~WrapperProvider() {
    const Call call(benchDeviceClass);
    _instanceMI->ft->cleanup(_instanceMI, call.context, 1);
    _associationMI->ft->cleanup(_associationMI, call.context, 1);
}
