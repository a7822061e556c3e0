#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/modules/ProviderCall.h"
#include "cimhost/operations/CimOperations.h"
#include "cimhost/operations/ProviderResults.h"
#include "cimhost/operations/Target.h"

#include <utility>

/// What the operations share: how nobody answers, and how walks take a provider's answer.
namespace cimhost {

/// CimError notSupported: nobody serves the class.
[[noreturn]] void refuseUnserved(const Target& target);

/// CimError notFound: the provider knows no such instance.
[[noreturn]] void refuseMissing(const ObjectPath& path);

/// Gives the path of a new instance the keys among its properties: all or none.
void takeKeys(const Class& definition, Instance& instance);

/// The flags of an operation on instances. LocalOnly counts as false and is never passed on.
CMPIFlags flagsOf(const InstanceOptions& options) noexcept;

/// What a provider's call asks for.
InstanceOptions optionsOf(CMPIFlags flags, const char** properties);

/// The properties that go to the client.
PropertySelection selectionOf(const Manner& manner, const InstanceOptions& options,
                              const Class* limit = nullptr);

/// Runs a walk of one provider. CMPI 2.0 let providers answer "not found" for "nothing": that is no
/// failure here.
template <typename Walk>
void runWalk(Walk&& walk) {
    try {
        walk();
    } catch (const CimError& error) {
        if (error.code() != CimCode::notFound) throw;
    }
}

/// Asks the provider about the path by the function in this slot of its table, as part of a walk.
template <typename MI, typename Slot, typename... Arguments>
void askProvider(const Broker& broker, ModuleHost& modules, const Registration& provider,
                 const RequestContext& context, ResultSink& results, ObjectPath path, Slot slot,
                 Arguments... arguments) {
    const auto mi = modules.use<MI>(provider);
    ProviderCall call(broker, context, results);
    const CMPIObjectPath* const asked = makeRequestPath(broker, std::move(path));
    runWalk([&] { call.run(mi, slot, asked, arguments...); });
}

}  // namespace cimhost
