#include "cimhost/operations/Enumeration.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/query/QueryText.h"

namespace cimhost {

void Operations::enumerateInstances(const RequestContext& request, const ObjectPath& classPath,
                                    const InstanceOptions& options, InstanceSink& sink) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, classPath);
    const PropertySelection selection{options.propertyList,
                                      options.deepInheritance ? nullptr : &target.definition};
    PropertyNames names(options.propertyList);
    const RequestContext context = providerContext(request, target.nameSpace, flagsOf(options));
    const auto ask = [&](const Registration& registration, const Target& asked) {
        const EnumerationFilter filter(_modules.registrations(), asked);
        InstanceWalk results(repository, asked, filter, registration.provider, sink, selection);
        const auto mi = _modules.use<CMPIInstanceMI>(registration);
        ProviderCall call(_broker, context, results);
        const CMPIObjectPath* const path = makeObjectPath(_broker, asked.classPath());
        runWalk([&] { call.run(mi, &CMPIInstanceMIFT::enumerateInstances, path, names.get()); });
    };
    enumerate(repository, _modules, target, ask,
              [&](const Instance& instance, const Class& definition) {
                  sink.deliver(instance, &definition, selection);
              });
}

void Operations::enumerateInstanceNames(const RequestContext& request, const ObjectPath& classPath,
                                        PathSink& sink) {
    const Repository& repository = _broker.repository();
    const Target target = requireTarget(repository, request, classPath);
    const RequestContext context = providerContext(request, target.nameSpace, 0);
    const auto ask = [&](const Registration& registration, const Target& asked) {
        const EnumerationFilter filter(_modules.registrations(), asked);
        PathWalk results(repository, asked, filter, registration.provider, sink);
        const auto mi = _modules.use<CMPIInstanceMI>(registration);
        ProviderCall call(_broker, context, results);
        const CMPIObjectPath* const path = makeObjectPath(_broker, asked.classPath());
        runWalk([&] { call.run(mi, &CMPIInstanceMIFT::enumerateInstanceNames, path); });
    };
    enumerate(repository, _modules, target, ask,
              [&](const Instance& instance, const Class&) { sink.deliver(instance.path); });
}

// A query is the provider's to run: the host has no query engine of its own, and static instances
// are out of its reach.
void Operations::execQuery(const RequestContext& request, const std::string& language,
                           const std::string& query, InstanceSink& sink) {
    const Repository& repository = _broker.repository();
    ObjectPath classPath;
    classPath.className = queriedClass(language, query);
    const Target target = requireTarget(repository, request, classPath);
    const PropertySelection selection;
    const RequestContext context = providerContext(request, target.nameSpace, 0);
    const ClassFilter everything{std::string_view()};
    const bool isAsked =
        askProviders(_modules, target, [&](const Registration& registration, const Target& asked) {
            InstanceWalk results(repository, asked, everything, registration.provider, sink,
                                 selection);
            const auto mi = _modules.use<CMPIInstanceMI>(registration);
            ProviderCall call(_broker, context, results);
            const CMPIObjectPath* const path = makeObjectPath(_broker, asked.classPath());
            runWalk([&] {
                call.run(mi, &CMPIInstanceMIFT::execQuery, path, query.c_str(), language.c_str());
            });
        });
    if (!isAsked) refuseUnserved(target);
}

}  // namespace cimhost
