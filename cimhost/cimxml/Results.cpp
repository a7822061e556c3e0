#include "cimhost/cimxml/Results.h"

namespace cimhost {

void InstanceWriter::deliver(const Instance& instance, const Class* definition,
                             const PropertySelection& selection) {
    XmlBuffer& out = _call.out.buffer();
    ObjectWriter& writer = _call.writer;
    switch (_form) {
        case InstanceForm::bare:
            writer.instance(instance, definition, selection, _includeClassOrigin);
            break;
        case InstanceForm::named:
            out.markup("<VALUE.NAMEDINSTANCE>");
            writer.instanceName(instance.path);
            writer.instance(instance, definition, selection, _includeClassOrigin);
            out.markup("</VALUE.NAMEDINSTANCE>");
            break;
        case InstanceForm::inFull:
            out.markup("<VALUE.OBJECTWITHPATH>");
            writer.instancePath(instance.path);
            writer.instance(instance, definition, selection, _includeClassOrigin);
            out.markup("</VALUE.OBJECTWITHPATH>");
            break;
    }
    _call.out.checkpoint();
}

void PathWriter::deliver(const ObjectPath& path) {
    XmlBuffer& out = _call.out.buffer();
    switch (_form) {
        case PathForm::name: _call.writer.instanceName(path); break;
        case PathForm::inFull:
            out.markup("<OBJECTPATH>");
            _call.writer.instancePath(path);
            out.markup("</OBJECTPATH>");
            break;
    }
    _call.out.checkpoint();
}

InstanceOptions readInstanceOptions(const Parameters& parameters) {
    InstanceOptions options;
    // Read for its errors only: LocalOnly counts as false.
    parameters.boolean(Parameter::localOnly, false);
    options.deepInheritance = parameters.boolean(Parameter::deepInheritance, true);
    options.includeQualifiers = parameters.boolean(Parameter::includeQualifiers, false);
    options.includeClassOrigin = parameters.boolean(Parameter::includeClassOrigin, false);
    options.propertyList = parameters.propertyList();
    return options;
}

}  // namespace cimhost
