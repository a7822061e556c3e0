#include "cimhost/operations/Dispatch.h"
#include "cimhost/operations/Operations.h"

#include <algorithm>
#include <utility>

namespace cimhost {

namespace {

// Who answers for the instance. The host's read-only instances come before the provider of an
// ancestor, and stand for their class where there is none.
Server requireServer(Servers& servers, const Target& target, const ObjectPath& path) {
    if (const Server own = servers.of(ProviderType::instance, target)) return own;
    HostInstances& readOnly = servers.readOnly();
    const Server nearest = servers.nearest(ProviderType::instance, target);
    if (!nearest.source && readOnly.find(path)) return {nullptr, &readOnly};
    if (nearest) return nearest;
    if (readOnly.serves(target)) return {nullptr, &readOnly};
    refuseUnserved(target);
}

void listAll(const Class& definition, Instance& instance) {
    for (const auto& property : definition.properties) {
        if (instance.find(property->name)) continue;
        instance.set(property->name, Value::nullOf(property->type, property->isArray));
    }
}

bool selects(const std::optional<std::vector<std::string>>& names, std::string_view property) {
    return PropertySelection{names, nullptr}.selects(property);
}

// A key may come along with the others, as long as it says the same as the path.
void checkModification(const Target& target, const Instance& instance,
                       const std::optional<std::vector<std::string>>& propertyList) {
    if (propertyList) {
        for (const std::string& name : *propertyList) target.definition.requireProperty(name);
    }
    for (const PropertyValue& property : instance.properties) {
        const Value* const key = instance.path.findKey(property.name);
        if (!key || *key == property.value || !selects(propertyList, property.name)) continue;
        throw CimError(
            CimCode::invalidParameter,
            "key " + property.name + " of " + target.definition.name + " cannot be modified");
    }
}

}  // namespace

void Operations::getInstance(const RequestContext& request, const ObjectPath& path,
                             const InstanceOptions& options, InstanceSink& sink) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, path);
    const ObjectPath wanted = requireInstancePath(repository, request, target, path);
    const Manner& manner = _broker.manner();
    const PropertySelection selection = selectionOf(manner, options);
    const Server server = requireServer(_servers, target, wanted);
    if (server.source) {
        const auto found = server.source->find(wanted);
        if (found) return sink.deliver(*found, &target.definition, selection);
        if (server.source == &_servers.readOnly()) refuseMissing(wanted);
        throw CimError(CimCode::notFound, codeName(CimCode::notFound));
    }

    PropertyNames names(options.propertyList);
    const CMPIFlags flags = flagsOf(options) & ~CMPIFlags{CMPI_FLAG_DeepInheritance};
    SingleInstance result(target, wanted, server.registration->provider, _judgeFor(request), sink,
                          selection);
    const auto mi = _modules.use<CMPIInstanceMI>(*server.registration);
    ProviderCall call(_broker, providerContext(request, target.nameSpace, flags), result);
    call.run(mi, &CMPIInstanceMIFT::getInstance,
             makeRequestPath(_broker, pathForProvider(manner, request, path, wanted)), names.get());
    if (!result.isDelivered()) refuseMissing(wanted);
}

ObjectPath Operations::createInstance(const RequestContext& request, const Instance& instance) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, instance.path);
    if (target.definition.isAbstract) {
        throw CimError(CimCode::invalidParameter,
                       "class " + target.definition.name + " is abstract and has no instances");
    }
    Instance declared = declaredProperties(repository, target, instance);
    declared.path = target.classPath();
    takeKeys(target.definition, declared);
    const Server server = requireServer(_servers, target, declared.path);
    const RequestContext context = providerContext(request, target.nameSpace, 0);
    if (server.source) return server.source->create(context, declared);

    SinglePath result(server.registration->provider);
    const auto mi = _modules.use<CMPIInstanceMI>(*server.registration);
    ProviderCall call(_broker, context, result);
    const Manner& manner = _broker.manner();
    if (manner.has(Habit::listsAllPropertiesOfNewInstances)) listAll(target.definition, declared);
    call.run(mi, &CMPIInstanceMIFT::createInstance,
             makeRequestPath(_broker,
                             pathForProvider(manner, request, instance.path, target.classPath())),
             makeInstance(_broker, std::move(declared)));
    return result.takeFor(repository, target, _judgeFor(request));
}

void Operations::modifyInstance(const RequestContext& request, const Instance& instance,
                                const std::optional<std::vector<std::string>>& propertyList) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, instance.path);
    Instance declared = declaredProperties(repository, target, instance);
    declared.path = requireInstancePath(repository, request, target, instance.path);
    checkModification(target, declared, propertyList);
    const Server server = requireServer(_servers, target, declared.path);
    const RequestContext context = providerContext(request, target.nameSpace, 0);
    if (server.source) {
        std::erase_if(declared.properties, [&](const PropertyValue& property) {
            return !selects(propertyList, property.name);
        });
        return server.source->modify(context, declared);
    }

    PropertyNames names(propertyList);
    ProviderSink result(server.registration->provider);
    const auto mi = _modules.use<CMPIInstanceMI>(*server.registration);
    ProviderCall call(_broker, context, result);
    const CMPIObjectPath* const path = makeRequestPath(
        _broker, pathForProvider(_broker.manner(), request, instance.path, declared.path));
    call.run(mi, &CMPIInstanceMIFT::modifyInstance, path,
             makeInstance(_broker, std::move(declared)), names.get());
}

void Operations::deleteInstance(const RequestContext& request, const ObjectPath& path) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, path);
    ObjectPath wanted = requireInstancePath(repository, request, target, path);
    const Server server = requireServer(_servers, target, wanted);
    const RequestContext context = providerContext(request, target.nameSpace, 0);
    if (server.source) return server.source->remove(context, wanted);

    ProviderSink result(server.registration->provider);
    const auto mi = _modules.use<CMPIInstanceMI>(*server.registration);
    ProviderCall call(_broker, context, result);
    call.run(mi, &CMPIInstanceMIFT::deleteInstance,
             makeRequestPath(_broker,
                             pathForProvider(_broker.manner(), request, path, std::move(wanted))));
}

}  // namespace cimhost
