#include "cimhost/operations/Dispatch.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/NearestName.h"
#include "cimhost/repository/ValueConversion.h"

#include <algorithm>
#include <utility>

namespace cimhost {

namespace {

[[noreturn]] void invalid(const MethodDefinition& method, const std::string& parameter,
                          const std::string& what) {
    throw CimError(CimCode::invalidParameter,
                   "parameter '" + parameter + "' of method " + method.name + " " + what);
}

std::string meantParameter(const MethodDefinition& method, std::string_view name) {
    return didYouMean(name, method.parameters, &ParameterDefinition::name);
}

Argument declaredInput(const Repository& repository, const Target& target,
                       const MethodDefinition& method, const Argument& given) {
    const ParameterDefinition* const parameter = findNamed(method.parameters, given.name);
    if (!parameter) {
        invalid(method, given.name, "is not declared" + meantParameter(method, given.name));
    }
    if (!parameter->isIn) invalid(method, given.name, "is for output only");
    try {
        return {parameter->name, declaredValue(repository, target, given.value, parameter->type,
                                               parameter->isArray, parameter->arraySize)};
    } catch (const CimError& error) {
        invalid(method, parameter->name, std::string("is refused: ") + error.what());
    }
}

// A parameter that is left out is NULL, and only a required one may not be that
// (DSP0004, 5.6.3.46).
void checkRequired(const MethodDefinition& method, const Arguments& inputs) {
    for (const ParameterDefinition& parameter : method.parameters) {
        if (!parameter.isIn || !hasQualifier(parameter.qualifiers, "Required")) continue;
        const Argument* const given = findNamed(inputs, parameter.name);
        if (!given || given->value.isNull()) invalid(method, parameter.name, "is missing");
    }
}

Arguments declaredInputs(const Repository& repository, const Target& target,
                         const MethodDefinition& method, const Arguments& given) {
    Arguments inputs;
    for (const Argument& argument : given) {
        if (findNamed(inputs, argument.name)) invalid(method, argument.name, "is given twice");
        inputs.push_back(declaredInput(repository, target, method, argument));
    }
    checkRequired(method, inputs);
    return inputs;
}

[[noreturn]] void refuseAnswer(const Registration& registration, const MethodDefinition& method,
                               const std::string& what) {
    throw CimError(CimCode::failed,
                   "provider " + registration.provider + ", method " + method.name + ": " + what);
}

Value declaredReturnValue(const Registration& registration, const MethodDefinition& method,
                          const std::optional<Value>& value) {
    if (!value) return Value::null(method.returnType);
    try {
        return convertValue(*value, method.returnType, false);
    } catch (const CimError& error) {
        refuseAnswer(registration, method, std::string("return value: ") + error.what());
    }
}

Arguments declaredOutputs(const Registration& registration, const MethodDefinition& method,
                          const Arguments& delivered) {
    Arguments outputs;
    for (const Argument& argument : delivered) {
        const ParameterDefinition* const parameter = findNamed(method.parameters, argument.name);
        if (!parameter || !parameter->isOut) {
            refuseAnswer(registration, method,
                         "'" + argument.name + "' is not declared as an output parameter" +
                             meantParameter(method, argument.name));
        }
        try {
            outputs.push_back(
                {parameter->name, convertValue(argument.value, parameter->type, parameter->isArray,
                                               parameter->arraySize)});
        } catch (const CimError& error) {
            refuseAnswer(registration, method, parameter->name + ": " + error.what());
        }
    }
    return outputs;
}

const Registration& requireRegistration(const Servers& servers, const Target& target,
                                        const MethodDefinition& method) {
    const Server server = servers.nearest(ProviderType::method, target);
    if (server.registration) return *server.registration;
    throw CimError(CimCode::methodNotAvailable, "no provider serves method " + method.name +
                                                    " of class " + target.definition.name);
}

}  // namespace

MethodResult Operations::invokeMethod(const RequestContext& request, const ObjectPath& path,
                                      const std::string& method, const Arguments& in) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, path);
    const MethodDefinition& declared = target.definition.requireMethod(method);
    // Without keys it is the class that is meant: of static methods, and of classes without keys.
    ObjectPath wanted = path.keys.empty() ? target.classPath()
                                          : requireInstancePath(repository, request, target, path);
    Arguments inputs = declaredInputs(repository, target, declared, in);
    const Registration& registration = requireRegistration(_servers, target, declared);

    SingleValue result(registration.provider);
    const auto mi = _modules.use<CMPIMethodMI>(registration);
    ProviderCall call(_broker, providerContext(request, target.nameSpace, 0), result);
    CMPIArgs* const outputs = makeArgs(_broker, {});
    wanted = pathForProvider(_broker.manner(), request, path, std::move(wanted));
    call.run(mi, &CMPIMethodMIFT::invokeMethod, makeRequestPath(_broker, std::move(wanted)),
             declared.name.c_str(), makeArgs(_broker, std::move(inputs)), outputs);
    return {declaredReturnValue(registration, declared, result.value()),
            declaredOutputs(registration, declared, modelOf(outputs))};
}

}  // namespace cimhost
