#include "cimhost/operations/Dispatch.h"
#include "cimhost/operations/HostAssociations.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <utility>

// Each provider is asked once, with the filters as the client gave them, however many association
// classes it is registered for: it knows by the filters which of its classes are meant, so that no
// result is lost and none comes twice. A provider may refuse a filter; that ends the operation,
// since the result would not be what was asked for. Providers are not given the property list,
// which some refuse here: what it leaves out is left out of the results.

namespace cimhost {

namespace {

struct Walk {
    const Repository& repository;
    Target target;
    ObjectPath source;
};

Walk makeWalk(const Repository& repository, const RequestContext& request, const ObjectPath& path) {
    const Target target = requireTarget(repository, request, path);
    return {repository, target, requireInstancePath(repository, target, path)};
}

void requireFilterClass(const Target& target, const std::string& className) {
    if (className.empty() || target.nameSpace.findClass(className)) return;
    throw CimError(CimCode::invalidParameter, "namespace " + target.nameSpace.name() +
                                                  " has no class '" + className + "' to filter by");
}

// Unknown classes count, on the association as at its ends: the provider knows better then.
bool canReferTo(const NameSpace& nameSpace, const Class* association, const Class& source) {
    if (!association) return true;
    const auto& properties = association->properties;
    return std::any_of(properties.begin(), properties.end(), [&](const auto& property) {
        if (property->type != CimType::reference) return false;
        return !nameSpace.findClass(property->referenceClass) ||
               nameSpace.isA(source.name, property->referenceClass);
    });
}

// A class that a client names and that is not registered is the business of its nearest ancestor.
bool serves(const Servers& servers, const Target& target, const Registration& registration,
            const std::string& associationClass) {
    const NameSpace& nameSpace = target.nameSpace;
    if (associationClass.empty() || equalNames(registration.className, associationClass) ||
        nameSpace.isA(registration.className, associationClass)) {
        return true;
    }
    const Class* const wanted = nameSpace.findClass(associationClass);
    if (!wanted) return false;
    const Registration* const nearest =
        servers.nearest(ProviderType::association, {nameSpace, *wanted}).registration;
    return nearest && equalNames(nearest->className, registration.className);
}

// One registration for each provider to ask.
std::vector<const Registration*> providersFor(const ModuleHost& modules, const Servers& servers,
                                              const Target& target,
                                              const std::string& associationClass) {
    const NameSpace& nameSpace = target.nameSpace;
    std::vector<const Registration*> chosen;
    for (const Registration* const each :
         modules.registrations().all(ProviderType::association, nameSpace.name())) {
        const bool isChosen = std::any_of(
            chosen.begin(), chosen.end(),
            [each](const Registration* other) { return other->provider == each->provider; });
        if (isChosen || !serves(servers, target, *each, associationClass)) continue;
        const Class* const association = nameSpace.findClass(each->className);
        if (canReferTo(nameSpace, association, target.definition)) chosen.push_back(each);
    }
    return chosen;
}

const char* orNull(const std::string& text) noexcept {
    return text.empty() ? nullptr : text.c_str();
}

CMPIFlags walkFlags(const InstanceOptions& options) noexcept {
    return flagsOf(options) & ~CMPIFlags{CMPI_FLAG_DeepInheritance};
}

/// Passes on what another operation finds, as a result of this one.
class Relay final : public InstanceSink {
public:
    Relay(InstanceSink& sink, const PropertySelection& selection)
        : _sink(sink), _selection(selection) {}

    void deliver(const Instance& instance, const Class* definition,
                 const PropertySelection&) override {
        _sink.deliver(instance, definition, _selection);
    }

private:
    InstanceSink& _sink;
    const PropertySelection& _selection;
};

}  // namespace

void Operations::associators(const RequestContext& request, const ObjectPath& path,
                             const AssociationFilter& filter, const InstanceOptions& options,
                             InstanceSink& sink) {
    const Walk walk = makeWalk(_broker.repository(), request, path);
    requireFilterClass(walk.target, filter.associationClass);
    requireFilterClass(walk.target, filter.resultClass);
    const PropertySelection selection{options.propertyList, nullptr};
    const ClassFilter accepted(filter.resultClass);
    const RequestContext context =
        providerContext(request, walk.target.nameSpace, walkFlags(options));
    for (const Registration* const each :
         providersFor(_modules, _servers, walk.target, filter.associationClass)) {
        InstanceWalk results(walk.repository, walk.target, accepted, each->provider, sink,
                             selection);
        const auto mi = _modules.use<CMPIAssociationMI>(*each);
        ProviderCall call(_broker, context, results);
        const CMPIObjectPath* const source = makeObjectPath(_broker, walk.source);
        runWalk([&] {
            call.run(mi, &CMPIAssociationMIFT::associators, source, orNull(filter.associationClass),
                     orNull(filter.resultClass), orNull(filter.role), orNull(filter.resultRole),
                     nullptr);
        });
    }
    Relay relay(sink, selection);
    visitAssociators(_servers, walk.repository, walk.target, walk.source, filter,
                     [&](const ObjectPath& end) {
                         // An object that is gone has no instance to show.
                         runWalk([&] { getInstance(request, end, options, relay); });
                     });
}

void Operations::associatorNames(const RequestContext& request, const ObjectPath& path,
                                 const AssociationFilter& filter, PathSink& sink) {
    const Walk walk = makeWalk(_broker.repository(), request, path);
    requireFilterClass(walk.target, filter.associationClass);
    requireFilterClass(walk.target, filter.resultClass);
    const ClassFilter accepted(filter.resultClass);
    const RequestContext context = providerContext(request, walk.target.nameSpace, 0);
    for (const Registration* const each :
         providersFor(_modules, _servers, walk.target, filter.associationClass)) {
        PathWalk results(walk.repository, walk.target, accepted, each->provider, sink);
        const auto mi = _modules.use<CMPIAssociationMI>(*each);
        ProviderCall call(_broker, context, results);
        const CMPIObjectPath* const source = makeObjectPath(_broker, walk.source);
        runWalk([&] {
            call.run(mi, &CMPIAssociationMIFT::associatorNames, source,
                     orNull(filter.associationClass), orNull(filter.resultClass),
                     orNull(filter.role), orNull(filter.resultRole));
        });
    }
    visitAssociators(_servers, walk.repository, walk.target, walk.source, filter,
                     [&](const ObjectPath& end) { sink.deliver(end); });
}

void Operations::references(const RequestContext& request, const ObjectPath& path,
                            const AssociationFilter& filter, const InstanceOptions& options,
                            InstanceSink& sink) {
    const Walk walk = makeWalk(_broker.repository(), request, path);
    requireFilterClass(walk.target, filter.resultClass);
    const PropertySelection selection{options.propertyList, nullptr};
    const ClassFilter accepted(filter.resultClass);
    const RequestContext context =
        providerContext(request, walk.target.nameSpace, walkFlags(options));
    for (const Registration* const each :
         providersFor(_modules, _servers, walk.target, filter.resultClass)) {
        InstanceWalk results(walk.repository, walk.target, accepted, each->provider, sink,
                             selection);
        const auto mi = _modules.use<CMPIAssociationMI>(*each);
        ProviderCall call(_broker, context, results);
        const CMPIObjectPath* const source = makeObjectPath(_broker, walk.source);
        runWalk([&] {
            call.run(mi, &CMPIAssociationMIFT::references, source, orNull(filter.resultClass),
                     orNull(filter.role), nullptr);
        });
    }
    visitReferences(_servers, walk.target, walk.source, filter.resultClass, filter.role,
                    [&](const Instance& instance, const Class& definition) {
                        sink.deliver(instance, &definition, selection);
                    });
}

void Operations::referenceNames(const RequestContext& request, const ObjectPath& path,
                                const AssociationFilter& filter, PathSink& sink) {
    const Walk walk = makeWalk(_broker.repository(), request, path);
    requireFilterClass(walk.target, filter.resultClass);
    const ClassFilter accepted(filter.resultClass);
    const RequestContext context = providerContext(request, walk.target.nameSpace, 0);
    for (const Registration* const each :
         providersFor(_modules, _servers, walk.target, filter.resultClass)) {
        PathWalk results(walk.repository, walk.target, accepted, each->provider, sink);
        const auto mi = _modules.use<CMPIAssociationMI>(*each);
        ProviderCall call(_broker, context, results);
        const CMPIObjectPath* const source = makeObjectPath(_broker, walk.source);
        runWalk([&] {
            call.run(mi, &CMPIAssociationMIFT::referenceNames, source, orNull(filter.resultClass),
                     orNull(filter.role));
        });
    }
    visitReferences(_servers, walk.target, walk.source, filter.resultClass, filter.role,
                    [&](const Instance& instance, const Class&) { sink.deliver(instance.path); });
}

}  // namespace cimhost
