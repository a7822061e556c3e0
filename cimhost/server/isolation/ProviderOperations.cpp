#include "cimhost/server/isolation/ProviderOperations.h"

#include "cimhost/indications/FilterCall.h"
#include "cimhost/operations/Dispatch.h"
#include "cimhost/operations/ProviderResults.h"
#include "cimhost/query/WqlParser.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace cimhost {
namespace {

const ClassFilter everything{std::string_view()};

/// A walk's context has it: the asker's flags tell the rest.
CMPIFlags withoutDepth(const InstanceOptions& options) noexcept {
    return flagsOf(options) & ~CMPIFlags{CMPI_FLAG_DeepInheritance};
}

RequestContext with(RequestContext request, CMPIFlags flags) {
    request.flags = flags;
    return request;
}

const char* orNull(const std::string& text) noexcept {
    return text.empty() ? nullptr : text.c_str();
}

std::string textOf(const Arguments& arguments, std::string_view name) {
    for (const Argument& each : arguments) {
        const auto* const text = each.name == name ? each.value.get<Text>() : nullptr;
        if (text) return text->str();
    }
    return {};
}

bool flagOf(const Arguments& arguments, std::string_view name) {
    for (const Argument& each : arguments) {
        const auto* const flag = each.name == name ? each.value.get<bool>() : nullptr;
        if (flag) return *flag;
    }
    return false;
}

}  // namespace

const Registration& ProviderOperations::_registration(ProviderType type, std::string_view nameSpace,
                                                      std::string_view className) const {
    const Registrations& all = _modules.registrations();
    const NameSpace* const known = _broker.repository().find(nameSpace);
    const Class* definition = known ? known->findClass(className) : nullptr;
    for (; definition; definition = known->findClass(definition->superClass)) {
        const Registration* const own = all.find(type, known->name(), definition->name);
        if (own && own->provider == _provider) return *own;
    }
    const auto any = std::ranges::find_if(all.all(), [this, type](const Registration& each) {
        return each.provider == _provider && each.serves(type);
    });
    if (any != all.all().end()) return *any;
    throw CimError(CimCode::failed,
                   "provider " + std::string(_provider) + " is not registered in this process");
}

template <typename MI>
MiUse<MI> ProviderOperations::_use(const RequestContext& request, std::string_view className) {
    return _modules.use<MI>(_registration(MiKind<MI>::type, request.nameSpace, className));
}

template <typename MI, typename Slot, typename... Texts>
void ProviderOperations::_walk(const RequestContext& request, const ObjectPath& path,
                               CMPIFlags flags, ResultSink& results, Slot slot, Texts... texts) {
    const auto mi = _use<MI>(request, path.className);
    ProviderCall call(_broker, with(request, flags), results);
    call.run(mi, slot, makeRequestPath(_broker, path), texts...);
}

void ProviderOperations::getInstance(const RequestContext& request, const ObjectPath& path,
                                     const InstanceOptions& options, InstanceSink& sink) {
    const Target target = requireTarget(_broker.repository(), request, path);
    const PropertySelection all;
    SingleInstance result(target, path, _provider, nullptr, sink, all);
    PropertyNames names(options.propertyList);
    _walk<CMPIInstanceMI>(request, path, withoutDepth(options), result,
                          &CMPIInstanceMIFT::getInstance, names.get());
    ObjectPath declared = target.classPath();
    if (!result.isDelivered()) refuseMissing(declared);
}

void ProviderOperations::enumerateInstances(const RequestContext& request,
                                            const ObjectPath& classPath,
                                            const InstanceOptions& options, InstanceSink& sink) {
    const Target target = requireTarget(_broker.repository(), request, classPath);
    const PropertySelection all;
    InstanceWalk results(_broker.repository(), target, everything, _provider, nullptr, sink, all);
    PropertyNames names(options.propertyList);
    _walk<CMPIInstanceMI>(request, classPath, flagsOf(options), results,
                          &CMPIInstanceMIFT::enumerateInstances, names.get());
}

void ProviderOperations::enumerateInstanceNames(const RequestContext& request,
                                                const ObjectPath& classPath, PathSink& sink) {
    const Target target = requireTarget(_broker.repository(), request, classPath);
    PathWalk results(_broker.repository(), target, everything, _provider, nullptr, sink);
    _walk<CMPIInstanceMI>(request, classPath, 0, results,
                          &CMPIInstanceMIFT::enumerateInstanceNames);
}

ObjectPath ProviderOperations::createInstance(const RequestContext& request,
                                              const Instance& instance) {
    const Target target = requireTarget(_broker.repository(), request, instance.path);
    Instance wanted = instance;
    takeKeys(target.definition, wanted);
    SinglePath result(_provider);
    const auto mi = _use<CMPIInstanceMI>(request, instance.className());
    ProviderCall call(_broker, request, result);
    call.run(mi, &CMPIInstanceMIFT::createInstance, makeRequestPath(_broker, instance.path),
             makeInstance(_broker, std::move(wanted)));
    return result.take();
}

void ProviderOperations::modifyInstance(
    const RequestContext& request, const Instance& instance,
    const std::optional<std::vector<std::string>>& propertyList) {
    ProviderSink result(_provider);
    PropertyNames names(propertyList);
    const auto mi = _use<CMPIInstanceMI>(request, instance.className());
    ProviderCall call(_broker, request, result);
    call.run(mi, &CMPIInstanceMIFT::modifyInstance, makeRequestPath(_broker, instance.path),
             makeInstance(_broker, instance), names.get());
}

void ProviderOperations::deleteInstance(const RequestContext& request, const ObjectPath& path) {
    ProviderSink result(_provider);
    _walk<CMPIInstanceMI>(request, path, 0, result, &CMPIInstanceMIFT::deleteInstance);
}

void ProviderOperations::associators(const RequestContext& request, const ObjectPath& path,
                                     const AssociationFilter& filter,
                                     const InstanceOptions& options, InstanceSink& sink) {
    const Target target = requireTarget(_broker.repository(), request, path);
    const PropertySelection all;
    InstanceWalk results(_broker.repository(), target, everything, _provider, nullptr, sink, all);
    PropertyNames names(options.propertyList);
    _walk<CMPIAssociationMI>(request, path, withoutDepth(options), results,
                             &CMPIAssociationMIFT::associators, orNull(filter.associationClass),
                             orNull(filter.resultClass), orNull(filter.role),
                             orNull(filter.resultRole), names.get());
}

void ProviderOperations::associatorNames(const RequestContext& request, const ObjectPath& path,
                                         const AssociationFilter& filter, PathSink& sink) {
    const Target target = requireTarget(_broker.repository(), request, path);
    PathWalk results(_broker.repository(), target, everything, _provider, nullptr, sink);
    _walk<CMPIAssociationMI>(request, path, 0, results, &CMPIAssociationMIFT::associatorNames,
                             orNull(filter.associationClass), orNull(filter.resultClass),
                             orNull(filter.role), orNull(filter.resultRole));
}

void ProviderOperations::references(const RequestContext& request, const ObjectPath& path,
                                    const AssociationFilter& filter, const InstanceOptions& options,
                                    InstanceSink& sink) {
    const Target target = requireTarget(_broker.repository(), request, path);
    const PropertySelection all;
    InstanceWalk results(_broker.repository(), target, everything, _provider, nullptr, sink, all);
    PropertyNames names(options.propertyList);
    _walk<CMPIAssociationMI>(request, path, withoutDepth(options), results,
                             &CMPIAssociationMIFT::references, orNull(filter.resultClass),
                             orNull(filter.role), names.get());
}

void ProviderOperations::referenceNames(const RequestContext& request, const ObjectPath& path,
                                        const AssociationFilter& filter, PathSink& sink) {
    const Target target = requireTarget(_broker.repository(), request, path);
    PathWalk results(_broker.repository(), target, everything, _provider, nullptr, sink);
    _walk<CMPIAssociationMI>(request, path, 0, results, &CMPIAssociationMIFT::referenceNames,
                             orNull(filter.resultClass), orNull(filter.role));
}

Value ProviderOperations::getProperty(const RequestContext&, const ObjectPath&, std::string_view) {
    throw CimError(CimCode::notSupported, codeName(CimCode::notSupported));
}

void ProviderOperations::setProperty(const RequestContext&, const ObjectPath&, std::string_view,
                                     Value) {
    throw CimError(CimCode::notSupported, codeName(CimCode::notSupported));
}

void ProviderOperations::execQuery(const RequestContext& request, const std::string& language,
                                   const std::string& query, InstanceSink& sink) {
    const ObjectPath path{{}, request.nameSpace, std::string(_className), {}};
    const Target target = requireTarget(_broker.repository(), request, path);
    const PropertySelection all;
    InstanceWalk results(_broker.repository(), target, everything, _provider, nullptr, sink, all);
    _walk<CMPIInstanceMI>(request, path, 0, results, &CMPIInstanceMIFT::execQuery, query.c_str(),
                          language.c_str());
}

MethodResult ProviderOperations::invokeMethod(const RequestContext& request, const ObjectPath& path,
                                              const std::string& method, const Arguments& in) {
    if (path.className == filterMethods::className) {
        return {_askAboutFilter(request, method, in), {}};
    }
    SingleValue result(_provider);
    const auto mi = _use<CMPIMethodMI>(request, path.className);
    ProviderCall call(_broker, request, result);
    CMPIArgs* const outputs = makeArgs(_broker, {});
    call.run(mi, &CMPIMethodMIFT::invokeMethod, makeRequestPath(_broker, path), method.c_str(),
             makeArgs(_broker, in), outputs);
    return {result.value().value_or(Value()), modelOf(outputs)};
}

Value ProviderOperations::_askAboutFilter(const RequestContext& request, const std::string& method,
                                          const Arguments& in) {
    const auto mi = _use<CMPIIndicationMI>(request, {});
    if (method == filterMethods::enable) {
        enableIndications(_broker, request, request.nameSpace, mi);
        return {};
    }
    if (method == filterMethods::disable) {
        disableIndications(_broker, request, request.nameSpace, mi);
        return {};
    }
    const auto query = std::make_shared<const WqlQuery>(
        parseQuery(textOf(in, "QueryLanguage"), textOf(in, "Query")));
    const CMPIIndicationMIFT& table = *mi.get()->ft;
    FilterCall call(_broker, request, query, request.nameSpace);
    if (method == filterMethods::authorize) {
        if (table.authorizeFilter) call.authorize(mi);
    } else if (method == filterMethods::mustPoll) {
        return Value::boolean(table.mustPoll && call.mustPoll(mi));
    } else if (method == filterMethods::activate) {
        call.activate(mi, flagOf(in, "IsFirst"));
    } else if (method == filterMethods::deactivate) {
        call.deactivate(mi, flagOf(in, "IsLast"));
    } else {
        throw CimError(CimCode::methodNotFound, codeName(CimCode::methodNotFound));
    }
    return {};
}

}  // namespace cimhost
