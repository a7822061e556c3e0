#include "common/LoggedProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/DecoratorUtils.h"

#include <sstream>

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
using CmpiCpp::CmpiStatus;

/// Runs the call; a CmpiStatus is logged with the line and goes on as it came.
template <typename Call>
auto LoggedProvider::_forward(const char* exceptionLine, Call call) {
    try {
        return call();
    } catch (const CmpiStatus& status) {
        if (_log.infoEnabled()) _log.info(exceptionLine, status.str());
        throw;
    }
}

void LoggedProvider::_logReturned(int count, const char* operation) {
    _log.info("returned %d object%s from %s()", count, count == 1 ? "" : "s", operation);
}

LoggedProvider::LoggedProvider(const CmpiBroker& broker, Logger& logger, Factory factory)
    : _log(logger) {
    _log.info("provider cxtor()");
    _p = _forward("provider cxtor exception: %s", [&] { return factory(broker, logger); });
    _log.info("returned from provider cxtor()");
}

LoggedProvider::LoggedProvider(const CmpiBroker& broker, Logger& logger, ContextFactory factory,
                               const CMPIContext* context)
    : _log(logger) {
    _log.info("provider cxtor()");
    _p = _forward("provider cxtor exception: %s", [&] { return factory(broker, logger, context); });
    _log.info("returned from provider cxtor()");
}

LoggedProvider::~LoggedProvider() {
    _log.info("provider dxtor()");
    delete _p;
    _log.info("returned from provider dxtor()");
}

void LoggedProvider::enumInstanceNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                       CmpiObjectPathResult& result) {
    if (_log.infoEnabled()) _log.info("enumInstanceNames(%s)", path.str());
    LoggedObjectPathResult logged(_log, result);
    _forward("enumInstanceNames() exception: %s",
             [&] { asInstanceProvider(_p)->enumInstanceNames(ctx, path, logged); });
    _logReturned(logged.size(), "enumInstanceNames");
}

void LoggedProvider::enumInstances(const CmpiContext& ctx, const CmpiObjectPath& path,
                                   const char** properties, CmpiInstanceResult& result) {
    if (_log.infoEnabled()) _log.info("enumInstances(%s)", path.str());
    LoggedInstanceResult logged(_log, result);
    // Without the final s of the operation's name: tools that read these logs know the line so.
    _forward("enumInstance() exception: %s",
             [&] { asInstanceProvider(_p)->enumInstances(ctx, path, properties, logged); });
    _logReturned(logged.size(), "enumInstances");
}

void LoggedProvider::getInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                 const char** properties, CmpiInstanceResult& result) {
    if (_log.infoEnabled()) _log.info("getInstance(%s)", path.str());
    LoggedInstanceResult logged(_log, result);
    _forward("getInstance() exception: %s",
             [&] { asInstanceProvider(_p)->getInstance(ctx, path, properties, logged); });
    _logReturned(logged.size(), "getInstance");
}

void LoggedProvider::createInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                    const CmpiInstance& instance, CmpiObjectPathResult& result) {
    if (_log.infoEnabled()) _log.info("createInstance(%s)", path.str());
    LoggedObjectPathResult logged(_log, result);
    _forward("createInstance() exception: %s",
             [&] { asInstanceProvider(_p)->createInstance(ctx, path, instance, logged); });
    _logReturned(logged.size(), "createInstance");
}

void LoggedProvider::modifyInstance(const CmpiContext& ctx, const CmpiObjectPath& path,
                                    const CmpiInstance& instance, const char** properties) {
    if (_log.infoEnabled()) _log.info("modifyInstance(%s)", path.str());
    _forward("modifyInstance() exception: %s",
             [&] { asInstanceProvider(_p)->modifyInstance(ctx, path, instance, properties); });
    _log.info("returned from modifyInstance()");
}

void LoggedProvider::deleteInstance(const CmpiContext& ctx, const CmpiObjectPath& path) {
    if (_log.infoEnabled()) _log.info("deleteInstance(%s)", path.str());
    _forward("deleteInstance() exception: %s",
             [&] { asInstanceProvider(_p)->deleteInstance(ctx, path); });
    _log.info("returned from deleteInstance()");
}

void LoggedProvider::execQuery(const CmpiContext& ctx, const CmpiObjectPath& path,
                               const std::string& query, const std::string& language,
                               CmpiObjectPathResult& result) {
    if (_log.infoEnabled()) _log.info("execQuery(%s)", path.str());
    LoggedObjectPathResult logged(_log, result);
    _forward("execQuery() exception: %s",
             [&] { asInstanceProvider(_p)->execQuery(ctx, path, query, language, logged); });
    _logReturned(logged.size(), "execQuery");
}

CMPIBroker* LoggedProvider::getBroker() {
    return _p ? _p->getBroker() : nullptr;
}

int LoggedProvider::unloadOK(const CmpiContext& ctx) {
    constexpr const char* words[] = {"okToUnload", "doNotUnloadNow", "neverUnload"};
    _log.info("unloadOK()");
    const int answer =
        _forward("unloadOK() exception: %s", [&] { return _p ? _p->unloadOK(ctx) : 0; });
    _log.info("returned from unloadOK, %s", answer >= 0 && answer <= 2 ? words[answer] : "");
    return answer;
}

void LoggedProvider::cleanup(const CmpiContext& ctx, bool terminating) {
    _log.info("cleanup(terminating=%d)", terminating ? 1 : 0);
    _forward("cleanup() exception: %s", [&] {
        if (_p) _p->cleanup(ctx, terminating);
    });
    _log.info("returned from cleanup()");
}

namespace {

std::string invocationText(const CmpiObjectPath& path, const CmpiName& methodName,
                           const CmpiArgs& in) {
    std::ostringstream text;
    text << "invokeMethod(path=" << path.str() << ", "
         << "methodName=" << '"' << methodName.c_str() << '"';
    for (unsigned int i = 0; i < in.getArgCount(); ++i) {
        const auto [name, value] = in.getArgAt(i);
        text << ", " << name.c_str() << "=" << value.str();
    }
    text << ")";
    return text.str();
}

}  // namespace

void LoggedProvider::invokeMethod(const CmpiContext& ctx, const CmpiObjectPath& path,
                                  const CmpiName& methodName, const CmpiArgs& in,
                                  CmpiMethodResult& result) {
    // The text is itself the format, so a per cent sign in a value is read as a conversion. The
    // logger takes that: a conversion without an argument touches nothing.
    if (_log.infoEnabled()) _log.info(invocationText(path, methodName, in).c_str());
    LoggedMethodResult logged(_log, result);
    _forward("invokeMethod() exception: %s",
             [&] { asMethodProvider(_p)->invokeMethod(ctx, path, methodName, in, logged); });
    _log.info("returned from invokeMethod()");
}

void LoggedProvider::associators(const CmpiContext& ctx, const CmpiObjectPath& path,
                                 const CmpiName& assocClass, const CmpiName& resultClass,
                                 const CmpiName& role, const CmpiName& resultRole,
                                 const char** properties, CmpiInstanceResult& result) {
    if (_log.infoEnabled()) {
        _log.info("associators(path=%s, assocClass=%s, resultClass=%s, role=%s, resultRole=%s)",
                  path.str(), assocClass.c_str(), resultClass.c_str(), role.c_str(),
                  resultRole.c_str());
    }
    LoggedInstanceResult logged(_log, result);
    _forward("associators() exception: %s", [&] {
        asAssociationProvider(_p)->associators(ctx, path, assocClass, resultClass, role, resultRole,
                                               properties, logged);
    });
    _logReturned(logged.size(), "associators");
}

void LoggedProvider::associatorNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                     const CmpiName& assocClass, const CmpiName& resultClass,
                                     const CmpiName& role, const CmpiName& resultRole,
                                     CmpiObjectPathResult& result) {
    if (_log.infoEnabled()) {
        _log.info("associatorNames(path=%s, assocClass=%s, resultClass=%s, role=%s, resultRole=%s)",
                  path.str(), assocClass.c_str(), resultClass.c_str(), role.c_str(),
                  resultRole.c_str());
    }
    LoggedObjectPathResult logged(_log, result);
    _forward("associatorNames() exception: %s", [&] {
        asAssociationProvider(_p)->associatorNames(ctx, path, assocClass, resultClass, role,
                                                   resultRole, logged);
    });
    _logReturned(logged.size(), "associatorNames");
}

void LoggedProvider::references(const CmpiContext& ctx, const CmpiObjectPath& path,
                                const CmpiName& resultClass, const CmpiName& role,
                                const char** properties, CmpiInstanceResult& result) {
    if (_log.infoEnabled()) {
        _log.info("references(path=%s, resultClass=%s, role=%s)", path.str(), resultClass.c_str(),
                  role.c_str());
    }
    LoggedInstanceResult logged(_log, result);
    _forward("references() exception: %s", [&] {
        asAssociationProvider(_p)->references(ctx, path, resultClass, role, properties, logged);
    });
    _logReturned(logged.size(), "references");
}

void LoggedProvider::referenceNames(const CmpiContext& ctx, const CmpiObjectPath& path,
                                    const CmpiName& resultClass, const CmpiName& role,
                                    CmpiObjectPathResult& result) {
    if (_log.infoEnabled()) {
        _log.info("referenceNames(path=%s, resultClass=%s, role=%s)", path.str(),
                  resultClass.c_str(), role.c_str());
    }
    LoggedObjectPathResult logged(_log, result);
    _forward("referenceNames() exception: %s", [&] {
        asAssociationProvider(_p)->referenceNames(ctx, path, resultClass, role, logged);
    });
    _logReturned(logged.size(), "referenceNames");
}

void LoggedProvider::authorizeFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                     const std::string& className, const CmpiObjectPath& path,
                                     const std::string& owner) {
    if (_log.infoEnabled()) {
        _log.info("authorizeFilter(classname=\"%s\", path=%s, user=%s)", className, path.str(),
                  owner);
    }
    _forward("authorizeFilter() exception: %s", [&] {
        asIndicationProvider(_p)->authorizeFilter(ctx, filter, className, path, owner);
    });
    _log.info("returned from authorizeFilter()");
}

void LoggedProvider::mustPoll(const CmpiContext& ctx, const CMPISelectExp* filter,
                              const std::string& className, const CmpiObjectPath& path) {
    if (_log.infoEnabled()) _log.info("mustPoll(classname=\"%s\", path=%s)", className, path.str());
    _forward("mustPoll() exception: %s",
             [&] { asIndicationProvider(_p)->mustPoll(ctx, filter, className, path); });
    _log.info("returned from mustPoll()");
}

void LoggedProvider::activateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                    const std::string& className, const CmpiObjectPath& path,
                                    bool last) {
    if (_log.infoEnabled()) {
        _log.info("activateFilter(classname=\"%s\", path=%s, last=%d)", className, path.str(),
                  last ? 1 : 0);
    }
    _forward("activateFilter() exception: %s",
             [&] { asIndicationProvider(_p)->activateFilter(ctx, filter, className, path, last); });
    _log.info("returned from activateFilter()");
}

void LoggedProvider::deactivateFilter(const CmpiContext& ctx, const CMPISelectExp* filter,
                                      const std::string& className, const CmpiObjectPath& path,
                                      bool last) {
    if (_log.infoEnabled()) {
        _log.info("deactivateFilter(classname=\"%s\", path=%s, last=%d)", className, path.str(),
                  last ? 1 : 0);
    }
    _forward("deactivateFilter() exception: %s", [&] {
        asIndicationProvider(_p)->deactivateFilter(ctx, filter, className, path, last);
    });
    _log.info("returned from deactivateFilter()");
}

void LoggedProvider::enableIndications(const CmpiContext& ctx) {
    _log.info("enableIndications()");
    _forward("enableIndications() exception: %s",
             [&] { asIndicationProvider(_p)->enableIndications(ctx); });
    _log.info("returned from enableIndications()");
}

void LoggedProvider::disableIndications(const CmpiContext& ctx) {
    _log.info("disableIndications()");
    _forward("disableIndications() exception: %s",
             [&] { asIndicationProvider(_p)->disableIndications(ctx); });
    _log.info("returned from disableIndications()");
}

}  // namespace PYL
