#include "common/PerfmonDecorator.h"

#include <cstdint>
#include <string_view>

#include "common/DecoratorUtils.h"

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

namespace {

void logTimeTaken(Logger const& log, std::string_view operation, timeval const& start,
                  timeval const& end) {
    constexpr std::int64_t second = 1'000'000;
    constexpr std::int32_t hundredth = 10'000;
    std::int64_t const secs = end.tv_sec - start.tv_sec;
    std::int64_t difference = end.tv_usec - start.tv_usec;
    if (secs != 0) {
        difference += second;
        if (difference >= second) difference -= second;
    }
    auto const usecs = static_cast<std::int32_t>(difference);
    log.info("%s completed in %d.%02ds", operation, static_cast<std::int32_t>(secs),
             usecs / hundredth);
}

}  // namespace

/// Reads the clock when it is made and when it ends, and writes the line of the operation then:
/// after the call, whether it returned or threw.
class PerfmonDecorator::Timing {
public:
    Timing(PerfmonDecorator& decorator, char const* operation) noexcept
        : _decorator(decorator), _operation(operation) {
        gettimeofday(&_start, nullptr);
    }
    ~Timing() {
        timeval end{};
        gettimeofday(&end, nullptr);
        if (_decorator._log.infoEnabled()) logTimeTaken(_decorator._log, _operation, _start, end);
    }
    Timing(Timing const&) = delete;
    Timing& operator=(Timing const&) = delete;

private:
    PerfmonDecorator& _decorator;
    char const* _operation;
    timeval _start{};
};

void PerfmonDecorator::_logTimeTaken(std::string const& name, timeval* start, timeval* end) {
    logTimeTaken(_log, name, *start, *end);
}

PerfmonDecorator::PerfmonDecorator(CmpiBroker const& broker, Logger& logger, Factory factory)
    : _broker(broker), _log(logger) {
    _log.appendLogSource(":perfmon");
    Timing const timing(*this, "constructor");
    _p = factory(broker, logger);
}

PerfmonDecorator::PerfmonDecorator(CmpiBroker const& broker, Logger& logger, ContextFactory factory,
                                   CMPIContext const* context)
    : _broker(broker), _log(logger) {
    _log.appendLogSource(":perfmon");
    Timing const timing(*this, "constructor");
    _p = factory(broker, logger, context);
}

PerfmonDecorator::~PerfmonDecorator() {
    Timing const timing(*this, "destructor");
    delete _p;
}

void PerfmonDecorator::enumInstanceNames(CmpiContext const& ctx, CmpiObjectPath const& path,
                                         CmpiObjectPathResult& result) {
    Timing const timing(*this, "enumInstanceNames");
    asInstanceProvider(_p)->enumInstanceNames(ctx, path, result);
}

void PerfmonDecorator::enumInstances(CmpiContext const& ctx, CmpiObjectPath const& path,
                                     char const** properties, CmpiInstanceResult& result) {
    Timing const timing(*this, "enumInstances");
    asInstanceProvider(_p)->enumInstances(ctx, path, properties, result);
}

void PerfmonDecorator::getInstance(CmpiContext const& ctx, CmpiObjectPath const& path,
                                   char const** properties, CmpiInstanceResult& result) {
    Timing const timing(*this, "getInstance");
    asInstanceProvider(_p)->getInstance(ctx, path, properties, result);
}

void PerfmonDecorator::createInstance(CmpiContext const& ctx, CmpiObjectPath const& path,
                                      CmpiInstance const& instance, CmpiObjectPathResult& result) {
    Timing const timing(*this, "createInstance");
    asInstanceProvider(_p)->createInstance(ctx, path, instance, result);
}

void PerfmonDecorator::modifyInstance(CmpiContext const& ctx, CmpiObjectPath const& path,
                                      CmpiInstance const& instance, char const** properties) {
    Timing const timing(*this, "modifyInstance");
    asInstanceProvider(_p)->modifyInstance(ctx, path, instance, properties);
}

void PerfmonDecorator::deleteInstance(CmpiContext const& ctx, CmpiObjectPath const& path) {
    Timing const timing(*this, "deleteInstance");
    asInstanceProvider(_p)->deleteInstance(ctx, path);
}

void PerfmonDecorator::execQuery(CmpiContext const& ctx, CmpiObjectPath const& path,
                                 std::string const& query, std::string const& language,
                                 CmpiObjectPathResult& result) {
    Timing const timing(*this, "execQuery");
    asInstanceProvider(_p)->execQuery(ctx, path, query, language, result);
}

CMPIBroker* PerfmonDecorator::getBroker() {
    return _broker.toRawCMPI();
}

int PerfmonDecorator::unloadOK(CmpiContext const& ctx) {
    Timing const timing(*this, "unloadOK");
    return _p ? _p->unloadOK(ctx) : 0;
}

void PerfmonDecorator::cleanup(CmpiContext const& ctx, bool terminating) {
    Timing const timing(*this, "cleanup");
    if (_p) _p->cleanup(ctx, terminating);
}

void PerfmonDecorator::invokeMethod(CmpiContext const& ctx, CmpiObjectPath const& path,
                                    CmpiName const& methodName, CmpiArgs const& in,
                                    CmpiMethodResult& result) {
    Timing const timing(*this, "invokeMethod");
    asMethodProvider(_p)->invokeMethod(ctx, path, methodName, in, result);
}

void PerfmonDecorator::associators(CmpiContext const& ctx, CmpiObjectPath const& path,
                                   CmpiName const& assocClass, CmpiName const& resultClass,
                                   CmpiName const& role, CmpiName const& resultRole,
                                   char const** properties, CmpiInstanceResult& result) {
    Timing const timing(*this, "associators");
    asAssociationProvider(_p)->associators(ctx, path, assocClass, resultClass, role, resultRole,
                                           properties, result);
}

void PerfmonDecorator::associatorNames(CmpiContext const& ctx, CmpiObjectPath const& path,
                                       CmpiName const& assocClass, CmpiName const& resultClass,
                                       CmpiName const& role, CmpiName const& resultRole,
                                       CmpiObjectPathResult& result) {
    Timing const timing(*this, "associatorNames");
    asAssociationProvider(_p)->associatorNames(ctx, path, assocClass, resultClass, role, resultRole,
                                               result);
}

void PerfmonDecorator::references(CmpiContext const& ctx, CmpiObjectPath const& path,
                                  CmpiName const& resultClass, CmpiName const& role,
                                  char const** properties, CmpiInstanceResult& result) {
    Timing const timing(*this, "references");
    asAssociationProvider(_p)->references(ctx, path, resultClass, role, properties, result);
}

void PerfmonDecorator::referenceNames(CmpiContext const& ctx, CmpiObjectPath const& path,
                                      CmpiName const& resultClass, CmpiName const& role,
                                      CmpiObjectPathResult& result) {
    Timing const timing(*this, "referenceNames");
    asAssociationProvider(_p)->referenceNames(ctx, path, resultClass, role, result);
}

void PerfmonDecorator::authorizeFilter(CmpiContext const& ctx, CMPISelectExp const* filter,
                                       std::string const& className, CmpiObjectPath const& path,
                                       std::string const& owner) {
    Timing const timing(*this, "authorizeFilter");
    asIndicationProvider(_p)->authorizeFilter(ctx, filter, className, path, owner);
}

void PerfmonDecorator::mustPoll(CmpiContext const& ctx, CMPISelectExp const* filter,
                                std::string const& className, CmpiObjectPath const& path) {
    Timing const timing(*this, "mustPoll");
    asIndicationProvider(_p)->mustPoll(ctx, filter, className, path);
}

void PerfmonDecorator::activateFilter(CmpiContext const& ctx, CMPISelectExp const* filter,
                                      std::string const& className, CmpiObjectPath const& path,
                                      bool last) {
    Timing const timing(*this, "activateFilter");
    asIndicationProvider(_p)->activateFilter(ctx, filter, className, path, last);
}

void PerfmonDecorator::deactivateFilter(CmpiContext const& ctx, CMPISelectExp const* filter,
                                        std::string const& className, CmpiObjectPath const& path,
                                        bool last) {
    Timing const timing(*this, "deactivateFilter");
    asIndicationProvider(_p)->deactivateFilter(ctx, filter, className, path, last);
}

void PerfmonDecorator::enableIndications(CmpiContext const& ctx) {
    Timing const timing(*this, "enableIndications");
    asIndicationProvider(_p)->enableIndications(ctx);
}

void PerfmonDecorator::disableIndications(CmpiContext const& ctx) {
    Timing const timing(*this, "disableIndications");
    asIndicationProvider(_p)->disableIndications(ctx);
}

}  // namespace PYL
