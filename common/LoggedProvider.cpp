#include "common/LoggedProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/detail/ForwardedOperations.h"
#include "common/detail/LogText.h"

#include <sstream>
#include <string_view>
#include <tuple>

namespace PYL {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiInstanceResult;
using CmpiCpp::CmpiMethodResult;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiObjectPathResult;
using CmpiCpp::CmpiStatus;

namespace {

std::string invocationText(const CmpiObjectPath& path, const CmpiName& methodName,
                           const CmpiArgs& in) {
    std::ostringstream text;
    text << "invokeMethod(path=" << logText(path) << ", "
         << "methodName=" << '"' << methodName.c_str() << '"';
    try {
        for (unsigned int i = 0; i < in.getArgCount(); ++i) {
            const auto [name, value] = in.getArgAt(i);
            text << ", " << name.c_str() << "=" << value.str();
        }
    } catch (const CmpiStatus&) {
        text << ", <bad value>";
    }
    text << ")";
    return text.str();
}

// The line before an operation, which its arguments decide.

void logRequest(const Logger& log, const char* name, const CmpiContext&) { log.info("%s()", name); }

void logRequest(const Logger& log, const char* name, const CmpiContext&, const CmpiObjectPath& path,
                const auto&...) {
    log.info("%s(%s)", name, logText(path));
}

void logRequest(const Logger& log, const char*, const CmpiContext&, const CmpiObjectPath& path,
                const CmpiName& methodName, const CmpiArgs& in, const CmpiMethodResult&) {
    // The text is itself the format, so a per cent sign in a value is read as a conversion. The
    // logger takes that: a conversion without an argument touches nothing.
    log.info(invocationText(path, methodName, in).c_str());
}

void logRequest(const Logger& log, const char* name, const CmpiContext&, const CmpiObjectPath& path,
                const CmpiName& assocClass, const CmpiName& resultClass, const CmpiName& role,
                const CmpiName& resultRole, const auto&...) {
    log.info("%s(path=%s, assocClass=%s, resultClass=%s, role=%s, resultRole=%s)", name,
             logText(path), assocClass.c_str(), resultClass.c_str(), role.c_str(),
             resultRole.c_str());
}

void logRequest(const Logger& log, const char* name, const CmpiContext&, const CmpiObjectPath& path,
                const CmpiName& resultClass, const CmpiName& role, const auto&...) {
    log.info("%s(path=%s, resultClass=%s, role=%s)", name, logText(path), resultClass.c_str(),
             role.c_str());
}

void logRequest(const Logger& log, const char* name, const CmpiContext&, const CMPISelectExp*,
                const std::string& className, const CmpiObjectPath& path) {
    log.info("%s(classname=\"%s\", path=%s)", name, className, logText(path));
}

void logRequest(const Logger& log, const char* name, const CmpiContext&, const CMPISelectExp*,
                const std::string& className, const CmpiObjectPath& path,
                const std::string& owner) {
    log.info("%s(classname=\"%s\", path=%s, user=%s)", name, className, logText(path), owner);
}

void logRequest(const Logger& log, const char* name, const CmpiContext&, const CMPISelectExp*,
                const std::string& className, const CmpiObjectPath& path, bool last) {
    log.info("%s(classname=\"%s\", path=%s, last=%d)", name, className, logText(path),
             last ? 1 : 0);
}

// What the inner provider gets: the arguments as they came, but a logger before the result.

template <typename Argument>
Argument& logged(const Logger&, Argument& argument) {
    return argument;
}

LoggedObjectPathResult logged(const Logger& log, CmpiObjectPathResult& result) {
    return {log, result};
}

LoggedInstanceResult logged(const Logger& log, CmpiInstanceResult& result) { return {log, result}; }

LoggedMethodResult logged(const Logger& log, CmpiMethodResult& result) { return {log, result}; }

// The line after an operation, which its last argument decides: the number of objects delivered,
// but of the values of a method.

void logReturned(const Logger& log, const char* name, const auto&) {
    log.info("returned from %s()", name);
}

void logCount(const Logger& log, const char* name, int count) {
    log.info("returned %d object%s from %s()", count, count == 1 ? "" : "s", name);
}

void logReturned(const Logger& log, const char* name, const LoggedObjectPathResult& result) {
    logCount(log, name, result.size());
}

void logReturned(const Logger& log, const char* name, const LoggedInstanceResult& result) {
    logCount(log, name, result.size());
}

/// Without the final s of enumInstances: tools that read these logs know the line so.
const char* nameInException(const char* name) {
    return std::string_view(name) == "enumInstances" ? "enumInstance" : name;
}

/// Runs the call; a CmpiStatus is logged and goes on as it came.
template <typename Call>
auto watch(const Logger& log, const char* name, Call call,
           const char* exceptionLine = "%s() exception: %s") {
    try {
        return call();
    } catch (const CmpiStatus& status) {
        if (log.infoEnabled()) log.info(exceptionLine, nameInException(name), status.str());
        throw;
    }
}

template <typename Make>
CmpiCpp::CmpiProvider* construct(const Logger& log, Make make) {
    log.info("provider cxtor()");
    auto* const made = watch(log, "provider cxtor", make, "%s exception: %s");
    log.info("returned from provider cxtor()");
    return made;
}

}  // namespace

LoggedProvider::LoggedProvider(const CmpiBroker& broker, Logger& logger, Factory factory)
    : _log(logger), _p(construct(_log, [&] { return factory(broker, logger); })) {}

LoggedProvider::LoggedProvider(const CmpiBroker& broker, Logger& logger, ContextFactory factory,
                               const CMPIContext* context)
    : _log(logger), _p(construct(_log, [&] { return factory(broker, logger, context); })) {}

LoggedProvider::~LoggedProvider() {
    _log.info("provider dxtor()");
    delete _p;
    _log.info("returned from provider dxtor()");
}

template <auto asInterface, auto operation, typename... Arguments>
void LoggedProvider::_forward(const char* name, Arguments&... arguments) {
    if (_log.infoEnabled()) logRequest(_log, name, arguments...);
    const auto call = [&](auto&&... passed) {
        watch(_log, name, [&] { (asInterface(_p)->*operation)(passed...); });
        logReturned(_log, name, std::get<sizeof...(passed) - 1>(std::tie(passed...)));
    };
    call(logged(_log, arguments)...);
}

CMPIBroker* LoggedProvider::getBroker() { return _p ? _p->getBroker() : nullptr; }

int LoggedProvider::unloadOK(const CmpiContext& context) {
    constexpr const char* words[] = {"okToUnload", "doNotUnloadNow", "neverUnload"};
    _log.info("unloadOK()");
    const int answer = watch(_log, "unloadOK", [&] { return _p ? _p->unloadOK(context) : 0; });
    _log.info("returned from unloadOK, %s", answer >= 0 && answer <= 2 ? words[answer] : "");
    return answer;
}

void LoggedProvider::cleanup(const CmpiContext& context, bool terminating) {
    _log.info("cleanup(terminating=%d)", terminating ? 1 : 0);
    watch(_log, "cleanup", [&] {
        if (_p) _p->cleanup(context, terminating);
    });
    _log.info("returned from cleanup()");
}

#define PYL_DECORATOR LoggedProvider
PYL_EACH_PROVIDER_OPERATION(PYL_FORWARD, PYL_LEAVE)
#undef PYL_DECORATOR

}  // namespace PYL
