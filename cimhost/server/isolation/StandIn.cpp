#include "cimhost/server/isolation/StandIn.h"

#include "cimhost/client/CimXmlClient.h"
#include "cimhost/client/RequestMessage.h"
#include "cimhost/modules/ProviderCall.h"
#include "cimhost/objects/ArgsHandle.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/ResultHandle.h"
#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/operations/Dispatch.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/server/isolation/LinkMessage.h"
#include "cimhost/server/isolation/ProviderOperations.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <utility>

namespace cimhost {
namespace {

/// Hands results on as the provider's own would be, past the table, which may be that of another
/// host: the other process has been through that already.
class Results final : public InstanceSink, public PathSink {
public:
    explicit Results(const CMPIResult* result) : _result(findObject<ResultObject>(result)) {}

    void deliver(const Instance& instance, const Class*, const PropertySelection&) override {
        _pass([&](ResultSink& sink) { sink.instance(instance); });
    }
    void deliver(const ObjectPath& path) override {
        _pass([&](ResultSink& sink) { sink.path(path); });
    }
    void deliver(const Value& value) {
        _pass([&](ResultSink& sink) { sink.data(value); });
    }

    /// What the taker of a result threw. It may well be a lost connection: that of the client.
    std::exception_ptr failure() const noexcept { return _failure; }

private:
    template <typename Deliver>
    void _pass(Deliver&& deliver) {
        try {
            _result->door->pass(deliver);
        } catch (...) {
            _failure = std::current_exception();
            throw CimError(CimCode::failed, "a result was not taken");
        }
    }

    ResultObject* _result;
    std::exception_ptr _failure;
};

/// One call of an MI, on its way to the other process.
class Forward {
public:
    Forward(StandIn& standIn, const CMPIContext* context, std::string_view operation,
            const ObjectPath& path)
        : _standIn(standIn),
          _request(modelOf(context)),
          _asked{standIn.provider(), operation, pathText(path)} {
        _notes.provider = standIn.provider();
        _notes.principal = _request.principal;
        // The other process counts this call itself.
        _notes.nesting = CallNesting::count() - 1;
    }

    void aboutMethod(const char* method) noexcept { _asked.method = method; }
    void aboutClass(std::string className) { _notes.className = std::move(className); }
    const RequestContext& request() const noexcept { return _request; }

    /// Tells when the process that was asked had been started.
    Clock::time_point run(const std::function<void(CimXmlClient&)>& work) {
        return _standIn.process().ask(_asked, [&](ClientTransport& transport) {
            CimXmlClient client(transport,
                                [this](const RequestContext&) { return _notes.headers(); });
            work(client);
        });
    }

private:
    StandIn& _standIn;
    const RequestContext& _request;
    AskedOfModule _asked;
    LinkNotes _notes;
};

template <typename MI>
StandIn& standInOf(const MI* mi) noexcept {
    return *static_cast<StandIn*>(const_cast<void*>(mi->hdl));
}

/// Runs `work(forward)` for a call of the MI; what it throws becomes the call's status.
template <typename MI, typename Work>
CMPIStatus forward(const MI* mi, const CMPIContext* context, std::string_view operation,
                   const ObjectPath& path, Work&& work) noexcept {
    StandIn& standIn = standInOf(mi);
    return enter(standIn.broker().handle(), [&](const Broker&, CMPIrc&) {
        Forward call(standIn, context, operation, path);
        work(call);
    });
}

/// What an operation is forwarded with.
struct Asked {
    CimXmlClient& client;
    const RequestContext& request;
    const ObjectPath& path;
    Results& results;
};

/// The same for an operation with results: `work(asked)`. `method` is that of invokeMethod.
template <typename MI, typename Work>
CMPIStatus forwardWalk(const MI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, std::string_view operation, Work&& work,
                       const char* method = "") noexcept {
    const ObjectPath& model = modelOf(path);
    return forward(mi, context, operation, model, [&](Forward& call) {
        call.aboutClass(model.className);
        call.aboutMethod(method);
        Results results(result);
        call.run([&](CimXmlClient& client) {
            try {
                work(Asked{client, call.request(), model, results});
            } catch (...) {
                // Whoever made the call finds the failure in the result.
                if (!results.failure()) throw;
                throw CimError(CimCode::failed, "a result was not taken");
            }
        });
    });
}

CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path) noexcept {
    return forwardWalk(mi, context, result, path, "enumerateInstanceNames", [](const Asked& asked) {
        asked.client.enumerateInstanceNames(asked.request, asked.path, asked.results);
    });
}

CMPIStatus enumerateInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char** properties) noexcept {
    return forwardWalk(mi, context, result, path, "enumerateInstances", [&](const Asked& asked) {
        asked.client.enumerateInstances(asked.request, asked.path,
                                        optionsOf(asked.request.flags, properties), asked.results);
    });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char** properties) noexcept {
    return forwardWalk(mi, context, result, path, "getInstance", [&](const Asked& asked) {
        asked.client.getInstance(asked.request, asked.path,
                                 optionsOf(asked.request.flags, properties), asked.results);
    });
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance) noexcept {
    return forwardWalk(mi, context, result, path, "createInstance", [&](const Asked& asked) {
        Instance wanted = modelOf(instance);
        wanted.path = asked.path;
        asked.results.deliver(asked.client.createInstance(asked.request, wanted));
    });
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance,
                          const char** properties) noexcept {
    return forwardWalk(mi, context, result, path, "modifyInstance", [&](const Asked& asked) {
        Instance wanted = modelOf(instance);
        wanted.path = asked.path;
        asked.client.modifyInstance(asked.request, wanted, namesOf(properties));
    });
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path) noexcept {
    return forwardWalk(mi, context, result, path, "deleteInstance", [](const Asked& asked) {
        asked.client.deleteInstance(asked.request, asked.path);
    });
}

CMPIStatus execQuery(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                     const CMPIObjectPath* path, const char* query, const char* language) noexcept {
    return forwardWalk(mi, context, result, path, "execQuery", [&](const Asked& asked) {
        asked.client.execQuery(asked.request, language, query, asked.results);
    });
}

CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char* associationClass,
                       const char* resultClass, const char* role, const char* resultRole,
                       const char** properties) noexcept {
    return forwardWalk(mi, context, result, path, "associators", [&](const Asked& asked) {
        asked.client.associators(asked.request, asked.path,
                                 {textOrEmpty(associationClass), textOrEmpty(resultClass),
                                  textOrEmpty(role), textOrEmpty(resultRole)},
                                 optionsOf(asked.request.flags, properties), asked.results);
    });
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext* context,
                           const CMPIResult* result, const CMPIObjectPath* path,
                           const char* associationClass, const char* resultClass, const char* role,
                           const char* resultRole) noexcept {
    return forwardWalk(mi, context, result, path, "associatorNames", [&](const Asked& asked) {
        asked.client.associatorNames(asked.request, asked.path,
                                     {textOrEmpty(associationClass), textOrEmpty(resultClass),
                                      textOrEmpty(role), textOrEmpty(resultRole)},
                                     asked.results);
    });
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                      const CMPIObjectPath* path, const char* resultClass, const char* role,
                      const char** properties) noexcept {
    return forwardWalk(mi, context, result, path, "references", [&](const Asked& asked) {
        asked.client.references(asked.request, asked.path,
                                {{}, textOrEmpty(resultClass), textOrEmpty(role), {}},
                                optionsOf(asked.request.flags, properties), asked.results);
    });
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext* context,
                          const CMPIResult* result, const CMPIObjectPath* path,
                          const char* resultClass, const char* role) noexcept {
    return forwardWalk(mi, context, result, path, "referenceNames", [&](const Asked& asked) {
        asked.client.referenceNames(asked.request, asked.path,
                                    {{}, textOrEmpty(resultClass), textOrEmpty(role), {}},
                                    asked.results);
    });
}

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* method, const CMPIArgs* inputs,
                        CMPIArgs* outputs) noexcept {
    return forwardWalk(
        mi, context, result, path, "invokeMethod",
        [&](const Asked& asked) {
            MethodResult answer =
                asked.client.invokeMethod(asked.request, asked.path, method, modelOf(inputs));
            findObject<ArgsObject>(outputs)->model = std::move(answer.out);
            if (answer.returnValue.type() == CimType::none) return;
            asked.results.deliver(answer.returnValue);
        },
        method);
}

ObjectPath filterTarget(const RequestContext& request) {
    return {{}, request.nameSpace, filterMethods::className, {}};
}

StandIn::Filter filterOf(const CMPIContext* context, const CMPISelectExp* filter) {
    const WqlQuery& query = *findObject<SelectExpObject>(filter)->query;
    return {modelOf(context), query.text, query.language, query.className};
}

Arguments argumentsOf(const StandIn::Filter& filter) {
    return {{"Query", Value::string(filter.query)},
            {"QueryLanguage", Value::string(filter.language)}};
}

Arguments argumentsOf(const StandIn::Filter& filter, const char* name, bool flag) {
    Arguments arguments = argumentsOf(filter);
    arguments.push_back({name, Value::boolean(flag)});
    return arguments;
}

struct FilterAnswer {
    Value value;
    Clock::time_point process;  ///< when it had been started
};

/// Asks the other process by one of the methods about filters.
CMPIStatus askAboutFilter(CMPIIndicationMI* mi, const CMPIContext* context, const char* operation,
                          const char* method, const Arguments& arguments,
                          FilterAnswer* answer = nullptr) {
    return forward(mi, context, operation, filterTarget(modelOf(context)), [&](Forward& call) {
        MethodResult result;
        const Clock::time_point process = call.run([&](CimXmlClient& client) {
            result = client.invokeMethod(call.request(), filterTarget(call.request()), method,
                                         arguments);
        });
        if (answer) *answer = {std::move(result.returnValue), process};
    });
}

/// The status that `work()` answers with; what it throws becomes one.
template <typename Work>
CMPIStatus answerOf(CMPIIndicationMI* mi, Work&& work) noexcept {
    CMPIStatus answer{CMPI_RC_OK, nullptr};
    const CMPIStatus failure =
        enter(standInOf(mi).broker().handle(), [&](const Broker&, CMPIrc&) { answer = work(); });
    return failure.rc != CMPI_RC_OK ? failure : answer;
}

std::unique_lock<std::recursive_mutex> lasting(const CMPIIndicationMI* mi) {
    return std::unique_lock(standInOf(mi).process().lasting());
}

/// A process that starts anew knows nothing of what ends here.
bool isRunning(const CMPIIndicationMI* mi) { return standInOf(mi).process().state().id != 0; }

CMPIStatus authorizeFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                           const CMPISelectExp* filter, const char*, const CMPIObjectPath*,
                           const char*) noexcept {
    return answerOf(mi, [&] {
        return askAboutFilter(mi, context, "authorizeFilter", filterMethods::authorize,
                              argumentsOf(filterOf(context, filter)));
    });
}

CMPIStatus mustPoll(CMPIIndicationMI* mi, const CMPIContext* context, const CMPIResult* result,
                    const CMPISelectExp* filter, const char*, const CMPIObjectPath*) noexcept {
    return answerOf(mi, [&] {
        FilterAnswer answer;
        const CMPIStatus status = askAboutFilter(mi, context, "mustPoll", filterMethods::mustPoll,
                                                 argumentsOf(filterOf(context, filter)), &answer);
        const Value& value = answer.value;
        if (status.rc == CMPI_RC_OK && !value.isNull()) Results(result).deliver(value);
        return status;
    });
}

CMPIStatus activateFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                          const CMPISelectExp* filter, const char*, const CMPIObjectPath*,
                          CMPIBoolean isFirst) noexcept {
    return answerOf(mi, [&] {
        StandIn::Filter active = filterOf(context, filter);
        FilterAnswer answer;
        const auto lock = lasting(mi);
        const CMPIStatus status =
            askAboutFilter(mi, context, "activateFilter", filterMethods::activate,
                           argumentsOf(active, "IsFirst", isFirst != 0), &answer);
        active.process = answer.process;
        if (status.rc == CMPI_RC_OK) standInOf(mi).noteActive(std::move(active));
        return status;
    });
}

CMPIStatus deActivateFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                            const CMPISelectExp* filter, const char*, const CMPIObjectPath*,
                            CMPIBoolean isLast) noexcept {
    return answerOf(mi, [&] {
        const StandIn::Filter active = filterOf(context, filter);
        const auto lock = lasting(mi);
        if (!standInOf(mi).noteInactive(active)) return CMPIStatus{CMPI_RC_OK, nullptr};
        return askAboutFilter(mi, context, "deActivateFilter", filterMethods::deactivate,
                              argumentsOf(active, "IsLast", isLast != 0));
    });
}

CMPIStatus enableIndications(CMPIIndicationMI* mi, const CMPIContext* context) noexcept {
    return answerOf(mi, [&] {
        FilterAnswer answer;
        const auto lock = lasting(mi);
        const CMPIStatus status =
            askAboutFilter(mi, context, "enableIndications", filterMethods::enable, {}, &answer);
        if (status.rc == CMPI_RC_OK) standInOf(mi).noteEnabled(modelOf(context), answer.process);
        return status;
    });
}

CMPIStatus disableIndications(CMPIIndicationMI* mi, const CMPIContext* context) noexcept {
    return answerOf(mi, [&] {
        const auto lock = lasting(mi);
        standInOf(mi).noteDisabled();
        if (!isRunning(mi)) return CMPIStatus{CMPI_RC_OK, nullptr};
        return askAboutFilter(mi, context, "disableIndications", filterMethods::disable, {});
    });
}

/// The other process cleans up when it ends.
template <typename MI>
CMPIStatus cleanUp(MI*, const CMPIContext*, CMPIBoolean) noexcept {
    return {CMPI_RC_OK, nullptr};
}

constexpr const char* miName = "StandIn";

// clang-format off
const CMPIInstanceMIFT instanceTable{
    CMPICurrentVersion, 0, miName, cleanUp<CMPIInstanceMI>,
    enumerateInstanceNames, enumerateInstances, getInstance, createInstance, modifyInstance,
    deleteInstance, execQuery, nullptr};
const CMPIAssociationMIFT associationTable{
    CMPICurrentVersion, 0, miName, cleanUp<CMPIAssociationMI>,
    associators, associatorNames, references, referenceNames, nullptr, nullptr};
const CMPIMethodMIFT methodTable{
    CMPICurrentVersion, 0, miName, cleanUp<CMPIMethodMI>,
    invokeMethod};
const CMPIIndicationMIFT indicationTable{
    CMPICurrentVersion, 0, miName, cleanUp<CMPIIndicationMI>,
    authorizeFilter, mustPoll, activateFilter, deActivateFilter, enableIndications,
    disableIndications, nullptr, nullptr, nullptr};
// clang-format on

}  // namespace

StandIn::StandIn(const Broker& broker, ModuleProcess& process, std::string provider)
    : _broker(broker),
      _process(process),
      _provider(std::move(provider)),
      _instanceMi{this, &instanceTable},
      _associationMi{this, &associationTable},
      _methodMi{this, &methodTable},
      _indicationMi{this, &indicationTable} {
    _process.onRestart([this](ClientTransport& transport, Clock::time_point started) {
        _restore(transport, started);
    });
}

void StandIn::noteActive(Filter filter) {
    _filters.push_back(std::move(filter));
    _process.keepRunning(true);
}

bool StandIn::noteInactive(const Filter& filter) {
    const auto found = std::ranges::find_if(_filters, [&filter](const Filter& each) {
        return each.query == filter.query && each.request.nameSpace == filter.request.nameSpace;
    });
    if (found == _filters.end()) return _process.state().id != 0;
    const Clock::time_point process = found->process;
    _filters.erase(found);
    _process.keepRunning(false);
    return process == _process.state().started;
}

void StandIn::noteEnabled(const RequestContext& request, Clock::time_point process) {
    _enabling = request;
    _enabledIn = process;
    _isEnabled = true;
}

// Each by itself: one that is refused keeps no other.
void StandIn::_restore(ClientTransport& transport, Clock::time_point process) {
    const std::lock_guard lock(_process.lasting());
    LinkNotes notes;
    notes.provider = _provider;
    CimXmlClient client(transport, [&notes](const RequestContext& request) {
        notes.principal = request.principal;
        return notes.headers();
    });
    std::string troubles;
    const auto tell = [&](const RequestContext& request, const char* method,
                          const Arguments& arguments) {
        try {
            client.invokeMethod(request, filterTarget(request), method, arguments);
            return true;
        } catch (const CimError& error) {
            troubles += (troubles.empty() ? "" : "; ") + std::string(error.what());
            return false;
        }
    };
    for (Filter& each : _filters) {
        if (each.process == process) continue;
        const bool isFirst = std::ranges::none_of(_filters, [&](const Filter& other) {
            return other.process == process && equalNames(other.className, each.className);
        });
        if (tell(each.request, filterMethods::activate, argumentsOf(each, "IsFirst", isFirst))) {
            each.process = process;
        }
    }
    if (_isEnabled && _enabledIn != process && tell(_enabling, filterMethods::enable, {})) {
        _enabledIn = process;
    }
    if (!troubles.empty()) throw CimError(CimCode::failed, troubles);
}

}  // namespace cimhost
