#include "common/AutostartDecorator.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/AutoMutex.h"
#include "common/PYLUtil.h"
#include "common/detail/ForwardedOperations.h"

namespace PYL {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceProvider;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;

AutostartDecorator::AutostartDecorator(const CmpiBroker& broker, Logger& logger,
                                       CmpiManagedInstance* instance, Factory factory)
    : _broker(broker), _log(logger), _autostartInstance(instance), _fn(factory) {
    PYLUtil::setBroker(_broker);
    pthread_mutex_init(&_initMutex, nullptr);
}

AutostartDecorator::~AutostartDecorator() {
    pthread_mutex_destroy(&_initMutex);
    delete _autostartInstance;
    delete _p.load();
}

void AutostartDecorator::_startProvider() {
    // Acquire: who sees the inner provider here without the lock must see it whole.
    if (_p.load(std::memory_order_acquire)) return;
    const AutoMutex lock(_initMutex);
    if (_p.load(std::memory_order_relaxed)) return;
    auto* const started = _fn(_broker, _log);
    if (!started) {
        _log.error("Unable to start provider");
        throw CmpiCpp::CmpiStatus(CMPI_RC_ERROR_SYSTEM, "Unable to start provider");
    }
    _p.store(started, std::memory_order_release);
}

CmpiInstanceProvider* AutostartDecorator::_asInstanceProvider() {
    _startProvider();
    return asInstanceProvider(_p.load(std::memory_order_relaxed));
}

CmpiCpp::CmpiAssociationProvider* AutostartDecorator::_asAssociationProvider() {
    _startProvider();
    return asAssociationProvider(_p.load(std::memory_order_relaxed));
}

CmpiCpp::CmpiMethodProvider* AutostartDecorator::_asMethodProvider() {
    _startProvider();
    return asMethodProvider(_p.load(std::memory_order_relaxed));
}

CmpiCpp::CmpiIndicationProvider* AutostartDecorator::_asIndicationProvider() {
    _startProvider();
    return asIndicationProvider(_p.load(std::memory_order_relaxed));
}

template <auto asInterface, auto operation, typename... Arguments>
void AutostartDecorator::_forward(const char*, Arguments&... arguments) {
    _startProvider();
    (asInterface(_p.load(std::memory_order_relaxed))->*operation)(arguments...);
}

// What the worker instance answers itself.

template <>
void AutostartDecorator::_forward<asInstanceProvider, &CmpiInstanceProvider::enumInstanceNames>(
    const char*, const CmpiContext& context, const CmpiObjectPath& path,
    CmpiObjectPathResult& result) {
    if (path.getClassName() == _autostartInstance->getClassName()) {
        result.deliver(_autostartInstance->getPath());
        return;
    }
    _asInstanceProvider()->enumInstanceNames(context, path, result);
}

template <>
void AutostartDecorator::_forward<asInstanceProvider, &CmpiInstanceProvider::enumInstances>(
    const char*, const CmpiContext& context, const CmpiObjectPath& path, const char**& properties,
    CmpiInstanceResult& result) {
    if (path.getClassName() == _autostartInstance->getClassName()) {
        result.deliver(_autostartInstance->getInstance());
        return;
    }
    _asInstanceProvider()->enumInstances(context, path, properties, result);
}

template <>
void AutostartDecorator::_forward<asInstanceProvider, &CmpiInstanceProvider::getInstance>(
    const char*, const CmpiContext& context, const CmpiObjectPath& path, const char**& properties,
    CmpiInstanceResult& result) {
    auto local = path;
    local.setHost(CmpiName(PYLUtil::getHostName()));
    if (local == _autostartInstance->getPath()) {
        result.deliver(_autostartInstance->getInstance());
        return;
    }
    _asInstanceProvider()->getInstance(context, path, properties, result);
}

CMPIBroker* AutostartDecorator::getBroker() { return CmpiBroker(PYLUtil::getBroker()).toRawCMPI(); }

int AutostartDecorator::unloadOK(const CmpiContext& context) {
    constexpr int doNotUnloadNow = 1;
    auto* const started = _p.load(std::memory_order_acquire);
    return started ? started->unloadOK(context) : doNotUnloadNow;
}

void AutostartDecorator::cleanup(const CmpiContext& context, bool terminating) {
    if (auto* const started = _p.load(std::memory_order_acquire)) {
        started->cleanup(context, terminating);
    }
}

#define PYL_DECORATOR AutostartDecorator
PYL_EACH_PROVIDER_OPERATION(PYL_FORWARD, PYL_LEAVE)
#undef PYL_DECORATOR

}  // namespace PYL
