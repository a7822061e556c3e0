#include "tests/support/ScriptedProvider.h"

#include <utility>

namespace cimhost::test {

namespace {

void note(ProviderCalled& called, const char* text) {
    called.texts.push_back(text ? std::optional<std::string>(text) : std::nullopt);
}
void note(ProviderCalled& called, const char** names) {
    if (!names) return;
    called.propertyList.emplace();
    for (; *names; ++names) called.propertyList->emplace_back(*names);
}
void note(ProviderCalled& called, const CMPIInstance* instance) {
    called.instance = modelOf(instance);
}
void note(ProviderCalled& called, const CMPIArgs* inputs) { called.inputs = modelOf(inputs); }
void note(ProviderCalled& called, CMPIArgs* outputs) { called.outputs = outputs; }

template <typename MI>
const ScriptedProvider& providerOf(const MI* mi) {
    return *static_cast<const ScriptedProvider*>(mi->hdl);
}

template <Behaviour ScriptedProvider::*behaviour, typename MI, typename... Arguments>
CMPIStatus call(MI* mi, const CMPIContext* context, const CMPIResult* result,
                const CMPIObjectPath* path, Arguments... arguments) {
    ProviderCalled called;
    called.context = context;
    called.result = result;
    called.path = modelOf(path);
    (note(called, arguments), ...);
    return (providerOf(mi).*behaviour)(called);
}

// What is not scripted is a null slot.
template <Behaviour ScriptedProvider::*behaviour, typename MI, typename... Arguments>
void set(CMPIStatus (*&slot)(MI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                             Arguments...),
         const ScriptedProvider& provider) {
    slot = provider.*behaviour ? &call<behaviour, MI, Arguments...> : nullptr;
}

template <typename MI>
CMPIStatus cleanUp(MI* mi, const CMPIContext*, CMPIBoolean terminating) {
    const ScriptedProvider& provider = providerOf(mi);
    return provider.cleanUp ? provider.cleanUp(terminating != 0) : ScriptedProvider::succeed();
}

template <typename Table, typename MI>
MI* withHead(Table& table, MI& mi, ScriptedProvider& provider) {
    table.ftVersion = CMPICurrentVersion;
    table.miVersion = 1;
    table.miName = "scripted";
    table.cleanup = cleanUp<MI>;
    mi.hdl = &provider;
    mi.ft = &table;
    return &mi;
}

}  // namespace

CMPIStatus ScriptedProvider::deliver(const CMPIResult* result, Instance instance) const {
    return result->ft->returnInstance(result, makeInstance(_broker, std::move(instance)));
}

CMPIStatus ScriptedProvider::deliver(const CMPIResult* result, ObjectPath path) const {
    return result->ft->returnObjectPath(result, makeObjectPath(_broker, std::move(path)));
}

CMPIStatus ScriptedProvider::deliver(const CMPIResult* result, const Value& value) const {
    const CMPIData data = toCmpi(_broker, value);
    return result->ft->returnData(result, &data.value, data.type);
}

CMPIStatus ScriptedProvider::fail(int code, const char* message) const {
    return {static_cast<CMPIrc>(code), message ? makeString(_broker, message) : nullptr};
}

CMPIInstanceMI* ScriptedProvider::instanceMi() {
    auto& table = _instanceTable;
    set<&ScriptedProvider::enumerateInstanceNames>(table.enumerateInstanceNames, *this);
    set<&ScriptedProvider::enumerateInstances>(table.enumerateInstances, *this);
    set<&ScriptedProvider::getInstance>(table.getInstance, *this);
    set<&ScriptedProvider::createInstance>(table.createInstance, *this);
    set<&ScriptedProvider::modifyInstance>(table.modifyInstance, *this);
    set<&ScriptedProvider::deleteInstance>(table.deleteInstance, *this);
    set<&ScriptedProvider::execQuery>(table.execQuery, *this);
    return withHead(table, _instanceMi, *this);
}

CMPIAssociationMI* ScriptedProvider::associationMi() {
    auto& table = _associationTable;
    set<&ScriptedProvider::associators>(table.associators, *this);
    set<&ScriptedProvider::associatorNames>(table.associatorNames, *this);
    set<&ScriptedProvider::references>(table.references, *this);
    set<&ScriptedProvider::referenceNames>(table.referenceNames, *this);
    return withHead(table, _associationMi, *this);
}

CMPIMethodMI* ScriptedProvider::methodMi() {
    set<&ScriptedProvider::invokeMethod>(_methodTable.invokeMethod, *this);
    return withHead(_methodTable, _methodMi, *this);
}

CMPIIndicationMI* ScriptedProvider::indicationMi() {
    return withHead(_indicationTable, _indicationMi, *this);
}

StaticModule ScriptedProvider::module() {
    return {[this](auto...) { return instanceMi(); }, [this](auto...) { return associationMi(); },
            [this](auto...) { return methodMi(); }, [this](auto...) { return indicationMi(); }};
}

}  // namespace cimhost::test
