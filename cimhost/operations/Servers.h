#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/operations/HostInstances.h"
#include "cimhost/operations/Target.h"

#include <functional>
#include <vector>

namespace cimhost {

/// Who answers for a class: a provider, a source of the host's own, or nobody.
struct Server {
    const Registration* registration = nullptr;
    InstanceSource* source = nullptr;

    explicit operator bool() const noexcept { return registration || source; }
};

using WantsInstance = std::function<bool(const Instance&, const Class&)>;

/// Who answers for which class: registered providers and, for the instances and associations of
/// classes that no provider serves, the host's sources. The host's read-only instances stand behind
/// all of them.
///
/// Filled before the first request; from then on safe from several threads.
class Servers {
public:
    /// The modules, whose registrations of the moment count, and the repository outlive this.
    Servers(const ModuleHost& modules, const Repository& repository)
        : _modules(modules), _readOnly(repository) {}

    /// The source outlives the last request.
    void add(InstanceSource& source) { _sources.push_back(&source); }

    /// Who answers for exactly this class.
    Server of(ProviderType type, const Target& target) const noexcept;

    /// Who answers for the class or else for its nearest ancestor that somebody answers for. This
    /// is for the class that a request names: its instances are the business of whoever serves an
    /// ancestor.
    Server nearest(ProviderType type, const Target& target) const noexcept;

    HostInstances& readOnly() noexcept { return _readOnly; }

    /// True when the read-only instances of just this class count: nobody answers for the class,
    /// nor a source for an ancestor, which has taken them in.
    bool countsReadOnly(ProviderType type, const Target& target) const noexcept;

    /// Calls `visit` for those of the host's association instances in the target's namespace that
    /// `isWanted` and that no provider answers for.
    void visitAssociations(const Target& end, const WantsInstance& isWanted,
                           const VisitInstance& visit) const;

private:
    const ModuleHost& _modules;
    HostInstances _readOnly;
    std::vector<InstanceSource*> _sources;
};

}  // namespace cimhost
