#include "tests/cimhost/client/RecordingOperations.h"

#include <utility>

namespace cimhost {

void RecordingOperations::_note(std::string name, const RequestContext& request,
                                const ObjectPath& target) {
    operation = std::move(name);
    context = request;
    path = target;
}

void RecordingOperations::_deliver(InstanceSink& sink) const {
    for (const Instance& each : instances) sink.deliver(each, nullptr, PropertySelection{});
    if (atEnd) atEnd();
}

void RecordingOperations::_deliver(PathSink& sink) const {
    for (const ObjectPath& each : paths) sink.deliver(each);
    if (atEnd) atEnd();
}

void RecordingOperations::getInstance(const RequestContext& request, const ObjectPath& target,
                                      const InstanceOptions& wanted, InstanceSink& sink) {
    _note("getInstance", request, target);
    options = wanted;
    _deliver(sink);
}

void RecordingOperations::enumerateInstances(const RequestContext& request,
                                             const ObjectPath& target,
                                             const InstanceOptions& wanted, InstanceSink& sink) {
    _note("enumerateInstances", request, target);
    options = wanted;
    _deliver(sink);
}

void RecordingOperations::enumerateInstanceNames(const RequestContext& request,
                                                 const ObjectPath& target, PathSink& sink) {
    _note("enumerateInstanceNames", request, target);
    _deliver(sink);
}

ObjectPath RecordingOperations::createInstance(const RequestContext& request,
                                               const Instance& given) {
    _note("createInstance", request, given.path);
    instance = given;
    if (atEnd) atEnd();
    return paths.at(0);
}

void RecordingOperations::modifyInstance(const RequestContext& request, const Instance& given,
                                         const std::optional<std::vector<std::string>>& names) {
    _note("modifyInstance", request, given.path);
    instance = given;
    propertyList = names;
    if (atEnd) atEnd();
}

void RecordingOperations::deleteInstance(const RequestContext& request, const ObjectPath& target) {
    _note("deleteInstance", request, target);
    if (atEnd) atEnd();
}

void RecordingOperations::associators(const RequestContext& request, const ObjectPath& target,
                                      const AssociationFilter& wantedFilter,
                                      const InstanceOptions& wanted, InstanceSink& sink) {
    _note("associators", request, target);
    filter = wantedFilter;
    options = wanted;
    _deliver(sink);
}

void RecordingOperations::associatorNames(const RequestContext& request, const ObjectPath& target,
                                          const AssociationFilter& wantedFilter, PathSink& sink) {
    _note("associatorNames", request, target);
    filter = wantedFilter;
    _deliver(sink);
}

void RecordingOperations::references(const RequestContext& request, const ObjectPath& target,
                                     const AssociationFilter& wantedFilter,
                                     const InstanceOptions& wanted, InstanceSink& sink) {
    _note("references", request, target);
    filter = wantedFilter;
    options = wanted;
    _deliver(sink);
}

void RecordingOperations::referenceNames(const RequestContext& request, const ObjectPath& target,
                                         const AssociationFilter& wantedFilter, PathSink& sink) {
    _note("referenceNames", request, target);
    filter = wantedFilter;
    _deliver(sink);
}

Value RecordingOperations::getProperty(const RequestContext& request, const ObjectPath& target,
                                       std::string_view property) {
    _note("getProperty", request, target);
    texts = {std::string(property)};
    return value;
}

void RecordingOperations::setProperty(const RequestContext& request, const ObjectPath& target,
                                      std::string_view property, Value given) {
    _note("setProperty", request, target);
    texts = {std::string(property)};
    value = std::move(given);
}

void RecordingOperations::execQuery(const RequestContext& request, const std::string& language,
                                    const std::string& query, InstanceSink& sink) {
    _note("execQuery", request, {});
    texts = {language, query};
    _deliver(sink);
}

MethodResult RecordingOperations::invokeMethod(const RequestContext& request,
                                               const ObjectPath& target, const std::string& method,
                                               const Arguments& in) {
    _note("invokeMethod", request, target);
    texts = {method};
    arguments = in;
    if (atEnd) atEnd();
    return result;
}

}  // namespace cimhost
