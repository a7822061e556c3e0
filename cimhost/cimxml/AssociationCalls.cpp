#include "cimhost/cimxml/Call.h"
#include "cimhost/cimxml/ClassWriter.h"
#include "cimhost/cimxml/Results.h"
#include "cimhost/repository/ClassAssociations.h"

#include <string_view>
#include <vector>

namespace cimhost {
namespace {

std::string_view targetClass(const Element& target) noexcept {
    return target.attributeText(target.tag() == Tag::className ? Attribute::name
                                                               : Attribute::className);
}

/// The class, when the target is one. Some clients name it by an instance without keys; what is
/// forwarded is an instance.
const Class* readTargetClass(const Call& call, const Element& target) {
    if (call.written != nullptr) return nullptr;
    const Class& definition = call.requireClass(targetClass(target));
    const bool isClass =
        target.tag() == Tag::className || (!target.firstChild() && definition.hasKeys());
    return isClass ? &definition : nullptr;
}

AssociationFilter readFilter(const Parameters& parameters) {
    return {parameters.className(Parameter::associationClass),
            parameters.className(Parameter::resultClass), parameters.text(Parameter::role),
            parameters.text(Parameter::resultRole)};
}

Element readObjectName(const Parameters& parameters) {
    return parameters.required(Parameter::objectName, {Tag::className, Tag::instanceName});
}

using InstanceOperation = void (CimOperations::*)(const RequestContext&, const ObjectPath&,
                                                  const AssociationFilter&, const InstanceOptions&,
                                                  InstanceSink&);
using NameOperation = void (CimOperations::*)(const RequestContext&, const ObjectPath&,
                                              const AssociationFilter&, PathSink&);
using ClassQuery = std::vector<const Class*> (*)(const NameSpace&, const Class&,
                                                 const AssociationFilter&);

void writeClasses(Call& call, const Parameters& parameters,
                  const std::vector<const Class*>& found) {
    ClassOptions options;
    options.localOnly = false;
    options.includeQualifiers = parameters.boolean(Parameter::includeQualifiers, false);
    options.includeClassOrigin = parameters.boolean(Parameter::includeClassOrigin, false);
    options.propertyList = parameters.propertyList();
    ClassWriter writer(call.out.buffer(), call.writer, call.nameSpace, options);
    for (const Class* const definition : found) {
        call.out.buffer().markup("<VALUE.OBJECTWITHPATH>");
        call.writer.classPath(definition->name);
        writer.write(*definition);
        call.out.buffer().markup("</VALUE.OBJECTWITHPATH>");
        call.out.checkpoint();
    }
}

void writeClassPaths(Call& call, const std::vector<const Class*>& found) {
    for (const Class* const definition : found) {
        call.out.buffer().markup("<OBJECTPATH>");
        call.writer.classPath(definition->name);
        call.out.buffer().markup("</OBJECTPATH>");
        call.out.checkpoint();
    }
}

void answerObjects(Call& call, const Parameters& parameters, InstanceOperation operation,
                   ClassQuery query) {
    const Element target = readObjectName(parameters);
    const AssociationFilter filter = readFilter(parameters);
    if (const Class* const definition = readTargetClass(call, target)) {
        return writeReturnValue(call, [&] {
            writeClasses(call, parameters, query(call.nameSpace, *definition, filter));
        });
    }
    const ObjectPath path = call.reader.path(target);
    const InstanceOptions options = readInstanceOptions(parameters);
    InstanceWriter sink(call, InstanceForm::inFull, options.includeClassOrigin);
    writeReturnValue(
        call, [&] { (call.operations.*operation)(call.context, path, filter, options, sink); });
}

void answerNames(Call& call, const Parameters& parameters, NameOperation operation,
                 ClassQuery query) {
    const Element target = readObjectName(parameters);
    const AssociationFilter filter = readFilter(parameters);
    if (const Class* const definition = readTargetClass(call, target)) {
        return writeReturnValue(
            call, [&] { writeClassPaths(call, query(call.nameSpace, *definition, filter)); });
    }
    const ObjectPath path = call.reader.path(target);
    PathWriter sink(call, PathForm::inFull);
    writeReturnValue(call, [&] { (call.operations.*operation)(call.context, path, filter, sink); });
}

std::vector<const Class*> findAssociated(const NameSpace& nameSpace, const Class& target,
                                         const AssociationFilter& filter) {
    return associatedClasses(
        nameSpace, target.name,
        {filter.associationClass, filter.resultClass, filter.role, filter.resultRole});
}

std::vector<const Class*> findReferencing(const NameSpace& nameSpace, const Class& target,
                                          const AssociationFilter& filter) {
    return referencingClasses(nameSpace, target.name, filter.resultClass, filter.role);
}

}  // namespace

void associators(Call& call, const Parameters& parameters) {
    answerObjects(call, parameters, &CimOperations::associators, findAssociated);
}

void associatorNames(Call& call, const Parameters& parameters) {
    answerNames(call, parameters, &CimOperations::associatorNames, findAssociated);
}

void references(Call& call, const Parameters& parameters) {
    answerObjects(call, parameters, &CimOperations::references, findReferencing);
}

void referenceNames(Call& call, const Parameters& parameters) {
    answerNames(call, parameters, &CimOperations::referenceNames, findReferencing);
}

}  // namespace cimhost
