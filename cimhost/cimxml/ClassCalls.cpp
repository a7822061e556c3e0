#include "cimhost/cimxml/Call.h"
#include "cimhost/cimxml/ClassWriter.h"
#include "cimhost/cimxml/Results.h"
#include "cimhost/repository/CimError.h"

#include <string>

namespace cimhost {
namespace {

ClassOptions readClassOptions(const Parameters& parameters) {
    ClassOptions options;
    options.localOnly = parameters.boolean(Parameter::localOnly, true);
    options.includeQualifiers = parameters.boolean(Parameter::includeQualifiers, true);
    options.includeClassOrigin = parameters.boolean(Parameter::includeClassOrigin, false);
    options.propertyList = parameters.propertyList();
    return options;
}

/// Calls `each` with the subclasses of the class, or with the classes at the top when none is
/// named: the direct ones only, or all below.
void forEachSubclass(const Call& call, const Parameters& parameters, auto&& each) {
    const std::string name = parameters.className(Parameter::className);
    if (!name.empty()) call.requireClass(name);
    const bool isDeep = parameters.boolean(Parameter::deepInheritance, false);
    for (const Class* const child : call.nameSpace.subclasses(name)) {
        if (!isDeep) {
            each(*child);
            continue;
        }
        for (const Class* const descendant : call.nameSpace.withDescendants(child->name)) {
            each(*descendant);
        }
    }
}

void writeDeclaration(Call& call, const QualifierDeclaration& declaration) {
    const ClassOptions options;
    ClassWriter(call.out.buffer(), call.writer, call.nameSpace, options).write(declaration);
    call.out.checkpoint();
}

}  // namespace

void getClass(Call& call, const Parameters& parameters) {
    const Class& definition =
        call.requireClass(parameters.requiredClassName(Parameter::className), CimCode::notFound);
    const ClassOptions options = readClassOptions(parameters);
    writeReturnValue(call, [&] {
        ClassWriter(call.out.buffer(), call.writer, call.nameSpace, options).write(definition);
    });
}

void enumerateClasses(Call& call, const Parameters& parameters) {
    const ClassOptions options = readClassOptions(parameters);
    ClassWriter writer(call.out.buffer(), call.writer, call.nameSpace, options);
    writeReturnValue(call, [&] {
        forEachSubclass(call, parameters, [&](const Class& definition) {
            writer.write(definition);
            call.out.checkpoint();
        });
    });
}

void enumerateClassNames(Call& call, const Parameters& parameters) {
    writeReturnValue(call, [&] {
        forEachSubclass(call, parameters, [&](const Class& definition) {
            call.writer.className(definition.name);
            call.out.checkpoint();
        });
    });
}

void getQualifier(Call& call, const Parameters& parameters) {
    const std::string name = parameters.requiredText(Parameter::qualifierName);
    const QualifierDeclaration* const declaration = call.nameSpace.findQualifier(name);
    if (!declaration) {
        throw CimError(CimCode::notFound,
                       "there is no qualifier " + name + " in namespace " + call.nameSpace.name());
    }
    writeReturnValue(call, [&] { writeDeclaration(call, *declaration); });
}

void enumerateQualifiers(Call& call, const Parameters&) {
    writeReturnValue(call, [&] {
        for (const QualifierDeclaration* const declaration : call.nameSpace.qualifiers()) {
            writeDeclaration(call, *declaration);
        }
    });
}

}  // namespace cimhost
