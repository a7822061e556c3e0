#include "cimhost/cimxml/Call.h"
#include "cimhost/cimxml/Results.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <string>
#include <utility>

namespace cimhost {
namespace {

ObjectPath readInstanceName(const Call& call, const Parameters& parameters) {
    return call.reader.path(parameters.required(Parameter::instanceName, {Tag::instanceName}));
}

ObjectPath readClassName(const Call& call, const Parameters& parameters) {
    return call.reader.path(parameters.required(Parameter::className, {Tag::className}));
}

Instance readInstance(const Call& call, const Element& element) {
    if (call.written != nullptr) return call.written->instance(element);
    const std::string_view name = element.attributeText(Attribute::className);
    return call.reader.instance(element, call.requireClass(name));
}

}  // namespace

void getInstance(Call& call, const Parameters& parameters) {
    const ObjectPath path = readInstanceName(call, parameters);
    const InstanceOptions options = readInstanceOptions(parameters);
    InstanceWriter sink(call, InstanceForm::bare, options.includeClassOrigin);
    writeReturnValue(call, [&] { call.operations.getInstance(call.context, path, options, sink); });
}

void enumerateInstances(Call& call, const Parameters& parameters) {
    const ObjectPath path = readClassName(call, parameters);
    const InstanceOptions options = readInstanceOptions(parameters);
    InstanceWriter sink(call, InstanceForm::named, options.includeClassOrigin);
    writeReturnValue(
        call, [&] { call.operations.enumerateInstances(call.context, path, options, sink); });
}

void enumerateInstanceNames(Call& call, const Parameters& parameters) {
    const ObjectPath path = readClassName(call, parameters);
    PathWriter sink(call, PathForm::name);
    writeReturnValue(call,
                     [&] { call.operations.enumerateInstanceNames(call.context, path, sink); });
}

void createInstance(Call& call, const Parameters& parameters) {
    const Element element = parameters.required(Parameter::newInstance, {Tag::instance});
    const ObjectPath created =
        call.operations.createInstance(call.context, readInstance(call, element));
    writeReturnValue(call, [&] { call.writer.instanceName(created); });
}

void modifyInstance(Call& call, const Parameters& parameters) {
    const Element named =
        parameters.required(Parameter::modifiedInstance, {Tag::valueNamedInstance});
    const Element name = *named.firstChild();
    const Element element = *name.next();
    parameters.boolean(Parameter::includeQualifiers, true);
    ObjectPath path = call.reader.path(name);
    if (!equalNames(path.className, element.attributeText(Attribute::className))) {
        throw CimError(
            CimCode::invalidParameter,
            "the modified instance is not of the class that its name says, " + path.className);
    }
    Instance instance = readInstance(call, element);
    instance.path = std::move(path);
    call.operations.modifyInstance(call.context, instance, parameters.propertyList());
}

void deleteInstance(Call& call, const Parameters& parameters) {
    call.operations.deleteInstance(call.context, readInstanceName(call, parameters));
}

void getProperty(Call& call, const Parameters& parameters) {
    const ObjectPath path = readInstanceName(call, parameters);
    const Value value = call.operations.getProperty(
        call.context, path, parameters.requiredText(Parameter::propertyName));
    writeReturnValue(call, [&] { call.writer.value(value); });
}

void setProperty(Call& call, const Parameters& parameters) {
    const ObjectPath path = readInstanceName(call, parameters);
    const Class& definition = call.requireClass(path.className);
    const PropertyDefinition& property =
        definition.requireProperty(parameters.requiredText(Parameter::propertyName));
    Value value = call.reader.value(
        parameters.find(Parameter::newValue),
        {property.type, property.isArray, "property", property.name, definition.name});
    call.operations.setProperty(call.context, path, property.name, std::move(value));
}

void execQuery(Call& call, const Parameters& parameters) {
    const std::string language = parameters.requiredText(Parameter::queryLanguage);
    const std::string query = parameters.requiredText(Parameter::query);
    InstanceWriter sink(call, InstanceForm::inFull, false);
    writeReturnValue(call, [&] { call.operations.execQuery(call.context, language, query, sink); });
}

}  // namespace cimhost
