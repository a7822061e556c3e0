#include "common/PerfmonDecorator.h"

#include "common/DecoratorUtils.h"

#include <cstdint>
#include <string_view>

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

void logTimeTaken(const Logger& log, std::string_view operation, const timeval& start,
                  const timeval& end) {
    constexpr std::uint32_t second = 1'000'000;
    constexpr std::int32_t hundredth = 10'000;
    // Unsigned, so that readings that no clock gives wrap round: 64 bits of seconds, of which 32 are
    // printed, and 32 bits of microseconds.
    const auto secs =
        static_cast<std::uint64_t>(end.tv_sec) - static_cast<std::uint64_t>(start.tv_sec);
    auto usecs =
        static_cast<std::uint32_t>(end.tv_usec) - static_cast<std::uint32_t>(start.tv_usec);
    if (secs != 0) {
        usecs += second;
        if (static_cast<std::int32_t>(usecs) >= static_cast<std::int32_t>(second)) usecs -= second;
    }
    log.info("%s completed in %d.%02ds", operation, static_cast<std::int32_t>(secs),
             static_cast<std::int32_t>(usecs) / hundredth);
}

}  // namespace

/// Reads the clock when it is made and when it ends, and writes the line of the operation then:
/// after the call, whether it returned or threw.
class PerfmonDecorator::Timing {
public:
    Timing(PerfmonDecorator& decorator, const char* operation) noexcept
        : _decorator(decorator), _operation(operation) {
        gettimeofday(&_start, nullptr);
    }
    ~Timing() {
        timeval end{};
        gettimeofday(&end, nullptr);
        if (_decorator._log.infoEnabled()) logTimeTaken(_decorator._log, _operation, _start, end);
    }
    Timing(const Timing&) = delete;
    Timing& operator=(const Timing&) = delete;

private:
    PerfmonDecorator& _decorator;
    const char* _operation;
    timeval _start{};
};

void PerfmonDecorator::_logTimeTaken(const std::string& name, timeval* start, timeval* end) {
    logTimeTaken(_log, name, *start, *end);
}

PerfmonDecorator::PerfmonDecorator(const CmpiBroker& broker, Logger& logger, Factory factory)
    : _broker(broker), _log(logger) {
    _log.appendLogSource(":perfmon");
    const Timing timing(*this, "constructor");
    _p = factory(broker, logger);
}

PerfmonDecorator::PerfmonDecorator(const CmpiBroker& broker, Logger& logger, ContextFactory factory,
                                   const CMPIContext* context)
    : _broker(broker), _log(logger) {
    _log.appendLogSource(":perfmon");
    const Timing timing(*this, "constructor");
    _p = factory(broker, logger, context);
}

PerfmonDecorator::~PerfmonDecorator() {
    const Timing timing(*this, "destructor");
    delete _p;
}

void PerfmonDecorator::enumInstanceNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                         CmpiObjectPathResult& result) {
    const Timing timing(*this, "enumInstanceNames");
    asInstanceProvider(_p)->enumInstanceNames(ctx, path, result);
}

void PerfmonDecorator::enumInstances(const CmpiContext& ctx, const CmpiObjectPath& path,
                                     const char** properties, CmpiInstanceResult& result) {
    const Timing timing(*this, "enumInstances");
    asInstanceProvider(_p)->enumInstances(ctx, path, properties, result);
}

void PerfmonDecorator::getInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                   const char** properties, CmpiInstanceResult& result) {
    const Timing timing(*this, "getInstance");
    asInstanceProvider(_p)->getInstance(ctx, path, properties, result);
}

void PerfmonDecorator::createInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                      const CmpiInstance& instance, CmpiObjectPathResult& result) {
    const Timing timing(*this, "createInstance");
    asInstanceProvider(_p)->createInstance(ctx, path, instance, result);
}

void PerfmonDecorator::modifyInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                      const CmpiInstance& instance, const char** properties) {
    const Timing timing(*this, "modifyInstance");
    asInstanceProvider(_p)->modifyInstance(ctx, path, instance, properties);
}

void PerfmonDecorator::deleteInstance(const CmpiContext& ctx, const CmpiObjectPath& path) {
    const Timing timing(*this, "deleteInstance");
    asInstanceProvider(_p)->deleteInstance(ctx, path);
}

void PerfmonDecorator::execQuery(const CmpiContext& ctx, const CmpiObjectPath& path,
                                 const std::string& query, const std::string& language,
                                 CmpiObjectPathResult& result) {
    const Timing timing(*this, "execQuery");
    asInstanceProvider(_p)->execQuery(ctx, path, query, language, result);
}

CMPIBroker* PerfmonDecorator::getBroker() {
    return _broker.toRawCMPI();
}

int PerfmonDecorator::unloadOK(const CmpiContext& ctx) {
    const Timing timing(*this, "unloadOK");
    return _p ? _p->unloadOK(ctx) : 0;
}

void PerfmonDecorator::cleanup(const CmpiContext& ctx, bool terminating) {
    const Timing timing(*this, "cleanup");
    if (_p) _p->cleanup(ctx, terminating);
}

void PerfmonDecorator::invokeMethod(const CmpiContext& ctx, const CmpiObjectPath& path,
                                    const CmpiName& methodName, const CmpiArgs& in,
                                    CmpiMethodResult& result) {
    const Timing timing(*this, "invokeMethod");
    asMethodProvider(_p)->invokeMethod(ctx, path, methodName, in, result);
}

void PerfmonDecorator::associators(const CmpiContext& ctx, const CmpiObjectPath& path,
                                   const CmpiName& assocClass, const CmpiName& resultClass,
                                   const CmpiName& role, const CmpiName& resultRole,
                                   const char** properties, CmpiInstanceResult& result) {
    const Timing timing(*this, "associators");
    asAssociationProvider(_p)->associators(ctx, path, assocClass, resultClass, role, resultRole,
                                           properties, result);
}

void PerfmonDecorator::associatorNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                       const CmpiName& assocClass, const CmpiName& resultClass,
                                       const CmpiName& role, const CmpiName& resultRole,
                                       CmpiObjectPathResult& result) {
    const Timing timing(*this, "associatorNames");
    asAssociationProvider(_p)->associatorNames(ctx, path, assocClass, resultClass, role, resultRole,
                                               result);
}

void PerfmonDecorator::references(const CmpiContext& ctx, const CmpiObjectPath& path,
                                  const CmpiName& resultClass, const CmpiName& role,
                                  const char** properties, CmpiInstanceResult& result) {
    const Timing timing(*this, "references");
    asAssociationProvider(_p)->references(ctx, path, resultClass, role, properties, result);
}

void PerfmonDecorator::referenceNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                      const CmpiName& resultClass, const CmpiName& role,
                                      CmpiObjectPathResult& result) {
    const Timing timing(*this, "referenceNames");
    asAssociationProvider(_p)->referenceNames(ctx, path, resultClass, role, result);
}

void PerfmonDecorator::authorizeFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                       const std::string& className, const CmpiObjectPath& path,
                                       const std::string& owner) {
    const Timing timing(*this, "authorizeFilter");
    asIndicationProvider(_p)->authorizeFilter(ctx, filter, className, path, owner);
}

void PerfmonDecorator::mustPoll(const CmpiContext& ctx, const CMPISelectExp* filter,
                                const std::string& className, const CmpiObjectPath& path) {
    const Timing timing(*this, "mustPoll");
    asIndicationProvider(_p)->mustPoll(ctx, filter, className, path);
}

void PerfmonDecorator::activateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                      const std::string& className, const CmpiObjectPath& path,
                                      bool last) {
    const Timing timing(*this, "activateFilter");
    asIndicationProvider(_p)->activateFilter(ctx, filter, className, path, last);
}

void PerfmonDecorator::deactivateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                        const std::string& className, const CmpiObjectPath& path,
                                        bool last) {
    const Timing timing(*this, "deactivateFilter");
    asIndicationProvider(_p)->deactivateFilter(ctx, filter, className, path, last);
}

void PerfmonDecorator::enableIndications(const CmpiContext& ctx) {
    const Timing timing(*this, "enableIndications");
    asIndicationProvider(_p)->enableIndications(ctx);
}

void PerfmonDecorator::disableIndications(const CmpiContext& ctx) {
    const Timing timing(*this, "disableIndications");
    asIndicationProvider(_p)->disableIndications(ctx);
}

}  // namespace PYL
