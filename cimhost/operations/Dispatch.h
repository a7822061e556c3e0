#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/modules/ProviderCall.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/operations/ProviderResults.h"
#include "cimhost/operations/Target.h"

#include <string_view>

/// What the operations share: who is asked, and how walks take a provider's answer.
namespace cimhost {

/// The registration of exactly this class, or nullptr.
inline const Registration* registrationOf(const ModuleHost& modules, ProviderType type,
                                          const Target& target) noexcept {
    return modules.registrations().find(type, target.nameSpace.name(), target.definition.name);
}

/// The registration of the class or else of its nearest ancestor that has one, or nullptr. This is
/// for the class that a request names: its instances are the business of whoever serves an
/// ancestor.
const Registration* nearestRegistration(const ModuleHost& modules, ProviderType type,
                                        const Target& target) noexcept;

/// CimError notSupported: nobody serves the class.
[[noreturn]] void refuseUnserved(const Target& target);

/// The flags of an operation on instances. LocalOnly counts as false and is never passed on.
CMPIFlags flagsOf(const InstanceOptions& options) noexcept;

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

}  // namespace cimhost
