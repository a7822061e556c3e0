#include "common/AutostartDecorator.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/AutoMutex.h"
#include "common/DecoratorUtils.h"
#include "common/PYLUtil.h"

namespace PYL {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiMethodResult;
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

CmpiCpp::CmpiInstanceProvider* AutostartDecorator::_asInstanceProvider() {
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

void AutostartDecorator::enumInstanceNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                           CmpiObjectPathResult& result) {
    if (path.getClassName() == _autostartInstance->getClassName()) {
        result.deliver(_autostartInstance->getPath());
        return;
    }
    _asInstanceProvider()->enumInstanceNames(ctx, path, result);
}

void AutostartDecorator::enumInstances(const CmpiContext& ctx, const CmpiObjectPath& path,
                                       const char** properties, CmpiInstanceResult& result) {
    if (path.getClassName() == _autostartInstance->getClassName()) {
        result.deliver(_autostartInstance->getInstance());
        return;
    }
    _asInstanceProvider()->enumInstances(ctx, path, properties, result);
}

void AutostartDecorator::getInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                     const char** properties, CmpiInstanceResult& result) {
    auto local = path;
    local.setHost(CmpiName(PYLUtil::getHostName()));
    if (local == _autostartInstance->getPath()) {
        result.deliver(_autostartInstance->getInstance());
        return;
    }
    _asInstanceProvider()->getInstance(ctx, path, properties, result);
}

void AutostartDecorator::createInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                        const CmpiInstance& instance,
                                        CmpiObjectPathResult& result) {
    _asInstanceProvider()->createInstance(ctx, path, instance, result);
}

void AutostartDecorator::modifyInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                        const CmpiInstance& instance, const char** properties) {
    _asInstanceProvider()->modifyInstance(ctx, path, instance, properties);
}

void AutostartDecorator::deleteInstance(const CmpiContext& ctx, const CmpiObjectPath& path) {
    _asInstanceProvider()->deleteInstance(ctx, path);
}

void AutostartDecorator::execQuery(const CmpiContext& ctx, const CmpiObjectPath& path,
                                   const std::string& query, const std::string& language,
                                   CmpiObjectPathResult& result) {
    _asInstanceProvider()->execQuery(ctx, path, query, language, result);
}

CMPIBroker* AutostartDecorator::getBroker() {
    return CmpiBroker(PYLUtil::getBroker()).toRawCMPI();
}

int AutostartDecorator::unloadOK(const CmpiContext& ctx) {
    constexpr int doNotUnloadNow = 1;
    auto* const started = _p.load(std::memory_order_acquire);
    return started ? started->unloadOK(ctx) : doNotUnloadNow;
}

void AutostartDecorator::cleanup(const CmpiContext& ctx, bool terminating) {
    if (auto* const started = _p.load(std::memory_order_acquire)) {
        started->cleanup(ctx, terminating);
    }
}

void AutostartDecorator::invokeMethod(const CmpiContext& ctx, const CmpiObjectPath& path,
                                      const CmpiName& methodName, const CmpiArgs& in,
                                      CmpiMethodResult& result) {
    _asMethodProvider()->invokeMethod(ctx, path, methodName, in, result);
}

void AutostartDecorator::associators(const CmpiContext& ctx, const CmpiObjectPath& path,
                                     const CmpiName& assocClass, const CmpiName& resultClass,
                                     const CmpiName& role, const CmpiName& resultRole,
                                     const char** properties, CmpiInstanceResult& result) {
    _asAssociationProvider()->associators(ctx, path, assocClass, resultClass, role, resultRole,
                                          properties, result);
}

void AutostartDecorator::associatorNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                         const CmpiName& assocClass, const CmpiName& resultClass,
                                         const CmpiName& role, const CmpiName& resultRole,
                                         CmpiObjectPathResult& result) {
    _asAssociationProvider()->associatorNames(ctx, path, assocClass, resultClass, role, resultRole,
                                              result);
}

void AutostartDecorator::references(const CmpiContext& ctx, const CmpiObjectPath& path,
                                    const CmpiName& resultClass, const CmpiName& role,
                                    const char** properties, CmpiInstanceResult& result) {
    _asAssociationProvider()->references(ctx, path, resultClass, role, properties, result);
}

void AutostartDecorator::referenceNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                        const CmpiName& resultClass, const CmpiName& role,
                                        CmpiObjectPathResult& result) {
    _asAssociationProvider()->referenceNames(ctx, path, resultClass, role, result);
}

void AutostartDecorator::authorizeFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                         const std::string& className, const CmpiObjectPath& path,
                                         const std::string& owner) {
    _asIndicationProvider()->authorizeFilter(ctx, filter, className, path, owner);
}

void AutostartDecorator::mustPoll(const CmpiContext& ctx, const CMPISelectExp* filter,
                                  const std::string& className, const CmpiObjectPath& path) {
    _asIndicationProvider()->mustPoll(ctx, filter, className, path);
}

void AutostartDecorator::activateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                        const std::string& className, const CmpiObjectPath& path,
                                        bool last) {
    _asIndicationProvider()->activateFilter(ctx, filter, className, path, last);
}

void AutostartDecorator::deactivateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                          const std::string& className, const CmpiObjectPath& path,
                                          bool last) {
    _asIndicationProvider()->deactivateFilter(ctx, filter, className, path, last);
}

void AutostartDecorator::enableIndications(const CmpiContext& ctx) {
    _asIndicationProvider()->enableIndications(ctx);
}

void AutostartDecorator::disableIndications(const CmpiContext& ctx) {
    _asIndicationProvider()->disableIndications(ctx);
}

}  // namespace PYL
