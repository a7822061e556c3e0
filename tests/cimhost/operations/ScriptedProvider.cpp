#include "tests/cimhost/operations/ScriptedProvider.h"

#include <utility>

namespace cimhost::test {

namespace {

std::optional<std::string> textOrNone(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<std::vector<std::string>> namesOf(const char** names) {
    if (!names) return std::nullopt;
    std::vector<std::string> result;
    for (; *names; ++names) result.emplace_back(*names);
    return result;
}

template <typename MI>
const ScriptedProvider& providerOf(const MI* mi) {
    return *static_cast<const ScriptedProvider*>(mi->hdl);
}

template <typename MI>
CMPIStatus cleanUp(MI* mi, const CMPIContext*, CMPIBoolean terminating) {
    const ScriptedProvider& provider = providerOf(mi);
    return provider.cleanUp ? provider.cleanUp(terminating != 0) : ScriptedProvider::succeed();
}

ProviderCalled calledWith(const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path) {
    ProviderCalled called;
    called.context = context;
    called.result = result;
    called.path = modelOf(path);
    return called;
}

CMPIStatus enumerateInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                  const CMPIResult* result, const CMPIObjectPath* path) {
    return providerOf(mi).enumerateInstanceNames(calledWith(context, result, path));
}

CMPIStatus enumerateInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                              const CMPIResult* result, const CMPIObjectPath* path,
                              const char** properties) {
    ProviderCalled called = calledWith(context, result, path);
    called.propertyList = namesOf(properties);
    return providerOf(mi).enumerateInstances(called);
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char** properties) {
    ProviderCalled called = calledWith(context, result, path);
    called.propertyList = namesOf(properties);
    return providerOf(mi).getInstance(called);
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance) {
    ProviderCalled called = calledWith(context, result, path);
    called.instance = modelOf(instance);
    return providerOf(mi).createInstance(called);
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance,
                          const char** properties) {
    ProviderCalled called = calledWith(context, result, path);
    called.instance = modelOf(instance);
    called.propertyList = namesOf(properties);
    return providerOf(mi).modifyInstance(called);
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path) {
    return providerOf(mi).deleteInstance(calledWith(context, result, path));
}

CMPIStatus execQuery(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                     const CMPIObjectPath* path, const char* query, const char* language) {
    ProviderCalled called = calledWith(context, result, path);
    called.texts = {textOrNone(query), textOrNone(language)};
    return providerOf(mi).execQuery(called);
}

CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char* associationClass,
                       const char* resultClass, const char* role, const char* resultRole,
                       const char** properties) {
    ProviderCalled called = calledWith(context, result, path);
    called.texts = {textOrNone(associationClass), textOrNone(resultClass), textOrNone(role),
                    textOrNone(resultRole)};
    called.propertyList = namesOf(properties);
    return providerOf(mi).associators(called);
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext* context,
                           const CMPIResult* result, const CMPIObjectPath* path,
                           const char* associationClass, const char* resultClass, const char* role,
                           const char* resultRole) {
    ProviderCalled called = calledWith(context, result, path);
    called.texts = {textOrNone(associationClass), textOrNone(resultClass), textOrNone(role),
                    textOrNone(resultRole)};
    return providerOf(mi).associatorNames(called);
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                      const CMPIObjectPath* path, const char* resultClass, const char* role,
                      const char** properties) {
    ProviderCalled called = calledWith(context, result, path);
    called.texts = {textOrNone(resultClass), textOrNone(role)};
    called.propertyList = namesOf(properties);
    return providerOf(mi).references(called);
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext* context,
                          const CMPIResult* result, const CMPIObjectPath* path,
                          const char* resultClass, const char* role) {
    ProviderCalled called = calledWith(context, result, path);
    called.texts = {textOrNone(resultClass), textOrNone(role)};
    return providerOf(mi).referenceNames(called);
}

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* method, const CMPIArgs* inputs,
                        CMPIArgs* outputs) {
    ProviderCalled called = calledWith(context, result, path);
    called.texts = {textOrNone(method)};
    called.inputs = modelOf(inputs);
    called.outputs = outputs;
    return providerOf(mi).invokeMethod(called);
}

// What is not scripted is a null slot.
template <typename Function>
Function slot(const Behaviour& behaviour, Function function) {
    return behaviour ? function : nullptr;
}

template <typename Table, typename MI>
void setHead(Table& table, MI& mi, ScriptedProvider& provider) {
    table.ftVersion = CMPICurrentVersion;
    table.miVersion = 1;
    table.miName = "scripted";
    table.cleanup = cleanUp<MI>;
    mi.hdl = &provider;
    mi.ft = &table;
}

}  // namespace

void ScriptedProvider::deliver(const CMPIResult* result, Instance instance) const {
    result->ft->returnInstance(result, makeInstance(_broker, std::move(instance)));
}

void ScriptedProvider::deliver(const CMPIResult* result, ObjectPath path) const {
    result->ft->returnObjectPath(result, makeObjectPath(_broker, std::move(path)));
}

void ScriptedProvider::deliver(const CMPIResult* result, const Value& value) const {
    const CMPIData data = toCmpi(_broker, value);
    result->ft->returnData(result, &data.value, data.type);
}

CMPIStatus ScriptedProvider::fail(int code, const char* message) const {
    return {static_cast<CMPIrc>(code), message ? makeString(_broker, message) : nullptr};
}

CMPIInstanceMI* ScriptedProvider::instanceMi() {
    setHead(_instanceTable, _instanceMi, *this);
    _instanceTable.enumerateInstanceNames =
        slot(enumerateInstanceNames, &test::enumerateInstanceNames);
    _instanceTable.enumerateInstances = slot(enumerateInstances, &test::enumerateInstances);
    _instanceTable.getInstance = slot(getInstance, &test::getInstance);
    _instanceTable.createInstance = slot(createInstance, &test::createInstance);
    _instanceTable.modifyInstance = slot(modifyInstance, &test::modifyInstance);
    _instanceTable.deleteInstance = slot(deleteInstance, &test::deleteInstance);
    _instanceTable.execQuery = slot(execQuery, &test::execQuery);
    return &_instanceMi;
}

CMPIAssociationMI* ScriptedProvider::associationMi() {
    setHead(_associationTable, _associationMi, *this);
    _associationTable.associators = slot(associators, &test::associators);
    _associationTable.associatorNames = slot(associatorNames, &test::associatorNames);
    _associationTable.references = slot(references, &test::references);
    _associationTable.referenceNames = slot(referenceNames, &test::referenceNames);
    return &_associationMi;
}

CMPIMethodMI* ScriptedProvider::methodMi() {
    setHead(_methodTable, _methodMi, *this);
    _methodTable.invokeMethod = slot(invokeMethod, &test::invokeMethod);
    return &_methodMi;
}

CMPIIndicationMI* ScriptedProvider::indicationMi() {
    setHead(_indicationTable, _indicationMi, *this);
    return &_indicationMi;
}

}  // namespace cimhost::test
