#include "cimhost/cimxml/Call.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/NearestName.h"

#include <string>

namespace cimhost {
namespace {

const ParameterDefinition& requireParameter(const MethodDefinition& method, std::string_view name) {
    if (const auto* const parameter = findNamed(method.parameters, name)) return *parameter;
    throw CimError(CimCode::invalidParameter,
                   "method " + method.name + " has no parameter " + std::string(name) +
                       didYouMean(name, method.parameters, &ParameterDefinition::name));
}

/// What the client says of the type must agree with the class; not every client says it.
void checkWrittenType(const Element& element, const ValueShape& shape) {
    const std::string_view written = element.attribute(Attribute::parameterType)
                                         .value_or(element.attributeText(Attribute::type));
    if (written.empty()) return;
    const CimType declared = shape.type == CimType::instance ? CimType::string : shape.type;
    if (typeFromName(written) == declared) return;
    throw CimError(CimCode::typeMismatch, shape.text() + " is of type " +
                                              std::string(typeName(declared)) + ", not " +
                                              std::string(written));
}

Arguments readArguments(const Call& call, const MethodDefinition& method,
                        const Element& methodCall) {
    Arguments arguments;
    for (const Element element : methodCall.children()) {
        if (element.tag() != Tag::parameterValue) continue;
        const ParameterDefinition& parameter =
            requireParameter(method, element.attributeText(Attribute::name));
        // Some clients name all parameters, with NULL for those that only go out.
        if (!parameter.isIn && !element.firstChild()) continue;
        const ValueShape shape{parameter.type, parameter.isArray, "parameter", parameter.name,
                               method.name};
        checkWrittenType(element, shape);
        arguments.push_back({parameter.name, call.reader.value(element.firstChild(), shape)});
    }
    return arguments;
}

class NoInstance final : public InstanceSink {
public:
    void deliver(const Instance&, const Class*, const PropertySelection&) override {}
};

/// A method of an instance that is not there is NOT_FOUND (DSP0200, 5.3.1), and not every provider
/// looks. Who has no answer to that question may still have the method.
void requireInstance(Call& call, const ObjectPath& path) {
    if (path.keys.empty()) return;
    NoInstance ignored;
    try {
        call.operations.getInstance(call.context, path, {.propertyList = {{}}}, ignored);
    } catch (const CimError& error) {
        if (error.code() == CimCode::notFound) throw;
    }
}

void writeResult(Call& call, const MethodResult& result) {
    XmlBuffer& out = call.out.buffer();
    // An empty element for NULL or void makes one of the clients in use crash.
    if (!result.returnValue.isNull() || call.written) {
        out.markup("<RETURNVALUE");
        call.writer.typeAttribute("PARAMTYPE", result.returnValue);
        out.markup(">");
        call.writer.value(result.returnValue);
        out.markup("</RETURNVALUE>");
    }
    for (const Argument& argument : result.out) {
        if (argument.value.isNull() && !call.written) continue;
        out.markup("<PARAMVALUE");
        out.attribute("NAME", argument.name);
        call.writer.typeAttribute("PARAMTYPE", argument.value);
        out.markup(">");
        call.writer.value(argument.value);
        out.markup("</PARAMVALUE>");
        call.out.checkpoint();
    }
}

void invokeForwarded(Call& call, const Message& message, const Element& name) {
    Arguments arguments;
    for (const Element element : message.call.children()) {
        if (element.tag() != Tag::parameterValue) continue;
        arguments.push_back(call.written->argument(element));
    }
    writeResult(call, call.operations.invokeMethod(call.context, call.reader.path(name),
                                                   std::string(message.name), arguments));
}

}  // namespace

void invokeMethod(Call& call, const Message& message) {
    const Element localPath = *message.call.firstChild();
    const Element name = *localPath.firstChild()->next();
    if (call.written) return invokeForwarded(call, message, name);
    const Attribute attribute =
        name.tag() == Tag::className ? Attribute::name : Attribute::className;
    const MethodDefinition& method =
        call.requireClass(name.attributeText(attribute)).requireMethod(message.name);
    const Arguments arguments = readArguments(call, method, message.call);
    const ObjectPath path = call.reader.path(name);
    requireInstance(call, path);
    writeResult(call, call.operations.invokeMethod(call.context, path, method.name, arguments));
}

}  // namespace cimhost
