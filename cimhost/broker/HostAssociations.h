#pragma once

#include <functional>

#include "cimhost/broker/Operations.h"
#include "cimhost/broker/Target.h"
#include "cimhost/repository/Repository.h"

/// Walks over static instances of association classes. Pure functions, safe from several threads.
namespace cimhost {

/// Says whether static instances of a class count; those of registered classes do not.
using CountsClass = std::function<bool(const Class&)>;

/// Calls `visit` for every static association instance in the target's namespace that refers to the
/// source in the role, and is of the association class or its subclasses. Empty names do not
/// filter.
void visitHostReferences(const Target& target, const ObjectPath& source,
                         std::string_view associationClass, std::string_view role,
                         const CountsClass& counts,
                         const std::function<void(const Instance&, const Class&)>& visit);

/// Calls `visit` for every object that such an association leads to, with its namespace filled in.
/// The result class is looked up in the namespace of each object.
void visitHostAssociators(const Repository& repository, const Target& target,
                          const ObjectPath& source, const AssociationFilter& filter,
                          const CountsClass& counts,
                          const std::function<void(const ObjectPath&)>& visit);

}  // namespace cimhost
