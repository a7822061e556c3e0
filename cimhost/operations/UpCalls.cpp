#include "cimhost/operations/UpCalls.h"

#include "cimhost/objects/Broker.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/objects/Values.h"
#include "cimhost/operations/Dispatch.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <utility>

namespace cimhost {

namespace {

CimOperations& requireOperations(const Broker& broker) {
    if (CimOperations* const operations = broker.operations()) return *operations;
    throw CimError(CimCode::notSupported, "this broker answers no up-calls");
}

// CMPI has the broker ignore the keys of class paths.
ObjectPath classPathOf(const CMPIObjectPath* path) {
    ObjectPath result = modelOf(path);
    result.keys.clear();
    return result;
}

const RequestContext& requestOf(const Broker& broker, const CMPIContext* context) {
    if (!context && broker.manner().has(Habit::crashesWithoutContext)) {
        endAs(broker, Habit::crashesWithoutContext);
    }
    return modelOf(context);
}

// Before anything else, where what is thrown leaves the table.
void throwAtIllegalNames(const CMPIBroker* handle, const char** names) {
    const Broker* const broker = Broker::find(handle);
    if (!names || !broker || !broker->manner().has(Habit::throwsOfItsOwn)) return;
    for (; *names; ++names) {
        const std::string_view name(*names);
        if (name.empty() || findNameEnd(name) != name.size()) throw HostException{};
    }
}

/// What one up-call needs beside its arguments.
struct UpCall {
    const Broker& broker;
    CimOperations& operations;
    const RequestContext& request;
};

// Runs `work(call)` and returns its result, or a zeroed one when it fails.
template <typename Work>
auto answerCall(const CMPIBroker* broker, const CMPIContext* context, CMPIStatus* status,
                Work&& work) noexcept {
    return enter(broker, status, [&](const Broker& self) {
        return work(UpCall{self, requireOperations(self), requestOf(self, context)});
    });
}

template <typename Work>
CMPIStatus answerCall(const CMPIBroker* broker, const CMPIContext* context, Work&& work) noexcept {
    return enter(broker, [&](const Broker& self) {
        work(UpCall{self, requireOperations(self), requestOf(self, context)});
    });
}

/// Keeps what an operation finds, without the properties that were not asked for.
class Instances final : public InstanceSink {
public:
    void deliver(const Instance& instance, const Class*,
                 const PropertySelection& selection) override {
        Instance& kept = _found.emplace_back(Instance{instance.path, {}});
        std::ranges::copy_if(
            instance.properties, std::back_inserter(kept.properties),
            [&](const PropertyValue& property) { return selection.selects(property.name); });
    }

    std::vector<Instance> take() { return std::move(_found); }

private:
    std::vector<Instance> _found;
};

class Paths final : public PathSink {
public:
    void deliver(const ObjectPath& path) override { _found.push_back(path); }

    std::vector<ObjectPath> take() { return std::move(_found); }

private:
    std::vector<ObjectPath> _found;
};

// The same for what `work(call, found)` puts into a sink of this kind.
template <typename Found, typename Work>
CMPIEnumeration* answerWith(const CMPIBroker* broker, const CMPIContext* context,
                            CMPIStatus* status, Work&& work) noexcept {
    return answerCall(broker, context, status, [&](const UpCall& call) {
        Found found;
        work(call, found);
        return makeEnumeration(call.broker, found.take());
    });
}

CMPIEnumeration* enumerateInstanceNames(const CMPIBroker* broker, const CMPIContext* context,
                                        const CMPIObjectPath* path, CMPIStatus* status) noexcept {
    return answerWith<Paths>(broker, context, status, [&](const UpCall& call, auto& found) {
        call.operations.enumerateInstanceNames(call.request, classPathOf(path), found);
    });
}

CMPIEnumeration* enumerateInstances(const CMPIBroker* broker, const CMPIContext* context,
                                    const CMPIObjectPath* path, const char** properties,
                                    CMPIStatus* status) {
    throwAtIllegalNames(broker, properties);
    return answerWith<Instances>(broker, context, status, [&](const UpCall& call, auto& found) {
        call.operations.enumerateInstances(call.request, classPathOf(path),
                                           optionsOf(call.request.flags, properties), found);
    });
}

CMPIInstance* getInstance(const CMPIBroker* broker, const CMPIContext* context,
                          const CMPIObjectPath* path, const char** properties, CMPIStatus* status) {
    throwAtIllegalNames(broker, properties);
    return answerCall(broker, context, status, [&](const UpCall& call) {
        Instances found;
        call.operations.getInstance(call.request, modelOf(path),
                                    optionsOf(call.request.flags, properties), found);
        return makeInstance(call.broker, std::move(found.take().at(0)));
    });
}

CMPIObjectPath* createInstance(const CMPIBroker* broker, const CMPIContext* context,
                               const CMPIObjectPath* path, const CMPIInstance* instance,
                               CMPIStatus* status) noexcept {
    return answerCall(broker, context, status, [&](const UpCall& call) {
        Instance wanted = modelOf(instance);
        wanted.path = modelOf(path);
        return makeObjectPath(call.broker, call.operations.createInstance(call.request, wanted));
    });
}

CMPIStatus modifyInstance(const CMPIBroker* broker, const CMPIContext* context,
                          const CMPIObjectPath* path, const CMPIInstance* instance,
                          const char** properties) {
    throwAtIllegalNames(broker, properties);
    return answerCall(broker, context, [&](const UpCall& call) {
        Instance wanted = modelOf(instance);
        wanted.path = modelOf(path);
        call.operations.modifyInstance(call.request, wanted, namesOf(properties));
    });
}

CMPIStatus deleteInstance(const CMPIBroker* broker, const CMPIContext* context,
                          const CMPIObjectPath* path) noexcept {
    return answerCall(broker, context, [&](const UpCall& call) {
        call.operations.deleteInstance(call.request, modelOf(path));
    });
}

CMPIEnumeration* execQuery(const CMPIBroker* broker, const CMPIContext* context,
                           const CMPIObjectPath* path, const char* query, const char* language,
                           CMPIStatus* status) noexcept {
    return answerWith<Instances>(broker, context, status, [&](const UpCall& call, auto& found) {
        RequestContext request = call.request;
        if (const std::string& nameSpace = modelOf(path).nameSpace; !nameSpace.empty()) {
            request.nameSpace = nameSpace;
        }
        call.operations.execQuery(request, textOrEmpty(language), textOrEmpty(query), found);
    });
}

CMPIEnumeration* associators(const CMPIBroker* broker, const CMPIContext* context,
                             const CMPIObjectPath* path, const char* associationClass,
                             const char* resultClass, const char* role, const char* resultRole,
                             const char** properties, CMPIStatus* status) {
    throwAtIllegalNames(broker, properties);
    return answerWith<Instances>(broker, context, status, [&](const UpCall& call, auto& found) {
        call.operations.associators(call.request, modelOf(path),
                                    {textOrEmpty(associationClass), textOrEmpty(resultClass),
                                     textOrEmpty(role), textOrEmpty(resultRole)},
                                    {.propertyList = namesOf(properties)}, found);
    });
}

CMPIEnumeration* associatorNames(const CMPIBroker* broker, const CMPIContext* context,
                                 const CMPIObjectPath* path, const char* associationClass,
                                 const char* resultClass, const char* role, const char* resultRole,
                                 CMPIStatus* status) noexcept {
    return answerWith<Paths>(broker, context, status, [&](const UpCall& call, auto& found) {
        call.operations.associatorNames(call.request, modelOf(path),
                                        {textOrEmpty(associationClass), textOrEmpty(resultClass),
                                         textOrEmpty(role), textOrEmpty(resultRole)},
                                        found);
    });
}

CMPIEnumeration* references(const CMPIBroker* broker, const CMPIContext* context,
                            const CMPIObjectPath* path, const char* resultClass, const char* role,
                            const char** properties, CMPIStatus* status) {
    throwAtIllegalNames(broker, properties);
    return answerWith<Instances>(broker, context, status, [&](const UpCall& call, auto& found) {
        call.operations.references(call.request, modelOf(path),
                                   {{}, textOrEmpty(resultClass), textOrEmpty(role), {}},
                                   {.propertyList = namesOf(properties)}, found);
    });
}

CMPIEnumeration* referenceNames(const CMPIBroker* broker, const CMPIContext* context,
                                const CMPIObjectPath* path, const char* resultClass,
                                const char* role, CMPIStatus* status) noexcept {
    return answerWith<Paths>(broker, context, status, [&](const UpCall& call, auto& found) {
        call.operations.referenceNames(call.request, modelOf(path),
                                       {{}, textOrEmpty(resultClass), textOrEmpty(role), {}},
                                       found);
    });
}

void addOutput(const Broker& broker, CMPIArgs* outputs, const Argument& argument) {
    const CMPIData data = toCmpi(broker, argument.value);
    const bool isNull = (data.state & CMPI_nullValue) != 0;
    const CMPIStatus status = outputs->ft->addArg(outputs, argument.name.c_str(),
                                                  isNull ? nullptr : &data.value, data.type);
    if (status.rc != CMPI_RC_OK) throw Failure{status.rc};
}

CMPIData invokeMethod(const CMPIBroker* broker, const CMPIContext* context,
                      const CMPIObjectPath* path, const char* method, const CMPIArgs* inputs,
                      CMPIArgs* outputs, CMPIStatus* status) noexcept {
    return answerCall(broker, context, status, [&](const UpCall& call) {
        modelOf(outputs);  // refused before anything is done
        const MethodResult result = call.operations.invokeMethod(
            call.request, modelOf(path), std::string(required(method)), modelOf(inputs));
        for (const Argument& argument : result.out) addOutput(call.broker, outputs, argument);
        return toCmpi(call.broker, result.returnValue);
    });
}

void requirePropertyUpCalls(const Broker& broker) {
    if (broker.manner().has(Habit::refusesPropertyUpCalls)) {
        throw Failure{CMPI_RC_ERR_NOT_SUPPORTED};
    }
}

CMPIStatus setProperty(const CMPIBroker* broker, const CMPIContext* context,
                       const CMPIObjectPath* path, const char* name, const CMPIValue* value,
                       CMPIType type) noexcept {
    return answerCall(broker, context, [&](const UpCall& call) {
        requirePropertyUpCalls(call.broker);
        endOnArrayWithNulls(call.broker, value, type);
        call.operations.setProperty(call.request, modelOf(path), required(name),
                                    fromCmpi(value, type));
    });
}

CMPIData getProperty(const CMPIBroker* broker, const CMPIContext* context,
                     const CMPIObjectPath* path, const char* name, CMPIStatus* status) noexcept {
    return answerCall(broker, context, status, [&](const UpCall& call) {
        requirePropertyUpCalls(call.broker);
        CMPIData data = toCmpi(
            call.broker, call.operations.getProperty(call.request, modelOf(path), required(name)));
        if ((data.state & CMPI_nullValue) != 0 &&
            call.broker.manner().has(Habit::returnsNullPropertiesAsBoolean)) {
            data.type = CMPI_boolean;
        }
        return data;
    });
}

CMPIEnumeration* refuseFilter(const CMPIBroker* broker, CMPIStatus* status) noexcept {
    return enter(broker, status, [](const Broker&) -> CMPIEnumeration* {
        throw CimError(CimCode::notSupported, "this broker does not filter by queries");
    });
}

CMPIEnumeration* enumerateInstancesFiltered(const CMPIBroker* broker, const CMPIContext* context,
                                            const CMPIObjectPath* path, const char** properties,
                                            const char* language, const char* filter,
                                            CMPIStatus* status) {
    if (language && filter) return refuseFilter(broker, status);
    return enumerateInstances(broker, context, path, properties, status);
}

CMPIEnumeration* associatorsFiltered(const CMPIBroker* broker, const CMPIContext* context,
                                     const CMPIObjectPath* path, const char* associationClass,
                                     const char* resultClass, const char* role,
                                     const char* resultRole, const char** properties,
                                     const char* language, const char* filter, CMPIStatus* status) {
    if (language && filter) return refuseFilter(broker, status);
    return associators(broker, context, path, associationClass, resultClass, role, resultRole,
                       properties, status);
}

CMPIEnumeration* referencesFiltered(const CMPIBroker* broker, const CMPIContext* context,
                                    const CMPIObjectPath* path, const char* resultClass,
                                    const char* role, const char** properties, const char* language,
                                    const char* filter, CMPIStatus* status) {
    if (language && filter) return refuseFilter(broker, status);
    return references(broker, context, path, resultClass, role, properties, status);
}

}  // namespace

void fillUpCalls(CMPIBrokerFT& table) {
    table.enumerateInstanceNames = enumerateInstanceNames;
    table.getInstance = getInstance;
    table.createInstance = createInstance;
    table.modifyInstance = modifyInstance;
    table.deleteInstance = deleteInstance;
    table.execQuery = execQuery;
    table.enumerateInstances = enumerateInstances;
    table.associators = associators;
    table.associatorNames = associatorNames;
    table.references = references;
    table.referenceNames = referenceNames;
    table.invokeMethod = invokeMethod;
    table.setProperty = setProperty;
    table.getProperty = getProperty;
    table.enumerateInstancesFiltered = enumerateInstancesFiltered;
    table.associatorsFiltered = associatorsFiltered;
    table.referencesFiltered = referencesFiltered;
}

}  // namespace cimhost
