#pragma once

#include "cimhost/objects/Objects.h"
#include "cimhost/operations/Target.h"
#include "cimhost/repository/Instance.h"

#include <functional>
#include <optional>

namespace cimhost {

/// Takes an instance with its own class.
using VisitInstance = std::function<void(const Instance&, const Class&)>;

/// Instances that the host has itself, without a provider. Operations hold requests against the
/// classes before they ask. Safe from several threads.
class InstanceSource {
public:
    virtual ~InstanceSource() = default;

    /// True when the class itself, subclasses aside, is one that the source has instances of.
    virtual bool serves(const Target& target) const noexcept = 0;

    /// Calls `visit` for each instance of the class and its subclasses.
    virtual void visit(const Target& target, const VisitInstance& visit) const = 0;

    /// Calls `visit` for the instances in the namespace that may be associations of an object of
    /// this class: all those that are, and perhaps others.
    virtual void visitAssociations(const Target& end, const VisitInstance& visit) const = 0;

    /// The instance with this path.
    virtual std::optional<Instance> find(const ObjectPath& path) const = 0;

    // Without these, CimError notSupported: the instances can only be read.

    /// The path of what was made.
    virtual ObjectPath create(const RequestContext& request, const Instance& instance);
    /// Changes the properties given.
    virtual void modify(const RequestContext& request, const Instance& instance);
    virtual void remove(const RequestContext& request, const ObjectPath& path);
};

}  // namespace cimhost
