#include "cimhost/operations/Dispatch.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/query/WqlParser.h"

namespace cimhost {

namespace {

// Calls `ask(server, target)` for the class and each of its subclasses that somebody serves, with
// the class to be asked about. True when there was one.
template <typename Ask>
bool askServers(const Servers& servers, const Target& target, Ask&& ask) {
    bool isAsked = false;
    for (const Class* const definition : target.nameSpace.withDescendants(target.definition.name)) {
        const Target each{target.nameSpace, *definition};
        const Server server = definition == &target.definition
                                  ? servers.nearest(ProviderType::instance, each)
                                  : servers.of(ProviderType::instance, each);
        if (!server) continue;
        isAsked = true;
        ask(server, each);
    }
    return isAsked;
}

// Asks everybody who serves the class or its subclasses, providers by `ask(registration, target,
// filter)`, and visits the instances of the host. CimError notSupported when nobody serves it, not
// even for associations alone, which gives an empty list, and there is nothing to visit.
template <typename Ask>
void enumerate(Servers& servers, const Target& target, Ask&& ask, const VisitInstance& visit) {
    const auto askServer = [&](const Server& server, const Target& asked) {
        const EnumerationFilter filter(servers, asked);
        if (server.registration) return ask(*server.registration, asked, filter);
        server.source->visit(asked, [&](const Instance& instance, const Class& definition) {
            const Fit fit = filter.judge(&asked.nameSpace, &definition);
            if (fit == Fit::belongs) visit(instance, definition);
        });
    };
    bool isServed = askServers(servers, target, askServer);
    servers.readOnly().visit(target, [&](const Instance& instance, const Class& definition) {
        const Target own{target.nameSpace, definition};
        if (!servers.countsReadOnly(ProviderType::instance, own)) return;
        isServed = true;
        visit(instance, definition);
    });
    isServed = isServed || servers.readOnly().serves(target) ||
               servers.nearest(ProviderType::association, target);
    if (!isServed) refuseUnserved(target);
}

// The class that a request names is spelled by the client, its subclasses by the schema.
ObjectPath askedPath(const Manner& manner, const RequestContext& request, const ObjectPath& written,
                     const Target& target, const Target& asked) {
    if (&asked.definition != &target.definition) return asked.classPath();
    return pathForProvider(manner, request, written, asked.classPath());
}

}  // namespace

void Operations::enumerateInstances(const RequestContext& request, const ObjectPath& classPath,
                                    const InstanceOptions& options, InstanceSink& sink) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, classPath);
    const Manner& manner = _broker.manner();
    const PropertySelection selection =
        selectionOf(manner, options, options.deepInheritance ? nullptr : &target.definition);
    PropertyNames names(options.propertyList);
    const RequestContext context = providerContext(request, target.nameSpace, flagsOf(options));
    const auto ask = [&](const Registration& registration, const Target& asked,
                         const EnumerationFilter& filter) {
        InstanceWalk results(repository, asked, filter, registration.provider, _judgeFor(request),
                             sink, selection);
        askProvider<CMPIInstanceMI>(_broker, _modules, registration, context, results,
                                    askedPath(manner, request, classPath, target, asked),
                                    &CMPIInstanceMIFT::enumerateInstances, names.get());
    };
    enumerate(_servers, target, ask, [&](const Instance& instance, const Class& definition) {
        sink.deliver(instance, &definition, selection);
    });
}

void Operations::enumerateInstanceNames(const RequestContext& request, const ObjectPath& classPath,
                                        PathSink& sink) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, classPath);
    const RequestContext context = providerContext(request, target.nameSpace, 0);
    const auto ask = [&](const Registration& registration, const Target& asked,
                         const EnumerationFilter& filter) {
        PathWalk results(repository, asked, filter, registration.provider, _judgeFor(request),
                         sink);
        askProvider<CMPIInstanceMI>(_broker, _modules, registration, context, results,
                                    askedPath(_broker.manner(), request, classPath, target, asked),
                                    &CMPIInstanceMIFT::enumerateInstanceNames);
    };
    enumerate(_servers, target, ask,
              [&](const Instance& instance, const Class&) { sink.deliver(instance.path); });
}

// A query is the provider's to run: the host has no query engine of its own, and its instances are
// out of reach.
void Operations::execQuery(const RequestContext& request, const std::string& language,
                           const std::string& query, InstanceSink& sink) {
    const Repository& repository = _broker.repository();
    ObjectPath classPath;
    classPath.className = queriedClass(language, query);
    const Target target = requireTarget(repository, request, classPath);
    const PropertySelection selection;
    const RequestContext context = providerContext(request, target.nameSpace, 0);
    const ClassFilter everything{std::string_view()};
    const auto ask = [&](const Server& server, const Target& asked) {
        if (!server.registration) {
            throw CimError(CimCode::notSupported, codeName(CimCode::notSupported));
        }
        InstanceWalk results(repository, asked, everything, server.registration->provider, nullptr,
                             sink, selection);
        askProvider<CMPIInstanceMI>(_broker, _modules, *server.registration, context, results,
                                    asked.classPath(), &CMPIInstanceMIFT::execQuery, query.c_str(),
                                    language.c_str());
    };
    if (!askServers(_servers, target, ask)) refuseUnserved(target);
}

}  // namespace cimhost
