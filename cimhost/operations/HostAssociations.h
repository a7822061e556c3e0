#pragma once

#include "cimhost/operations/Operations.h"
#include "cimhost/operations/Target.h"
#include "cimhost/repository/Repository.h"

#include <functional>
#include <string_view>

/// Walks over the host's own instances of association classes. Pure functions, safe from several
/// threads.
namespace cimhost {

/// Calls `visit` for each of the host's association instances, in the target's namespace, that
/// refers to the source in the role, and is of the association class or its subclasses. Empty names
/// do not filter. Instances of classes that a provider serves do not count.
void visitReferences(const Servers& servers, const Target& target, const ObjectPath& source,
                     std::string_view associationClass, std::string_view role,
                     const VisitInstance& visit);

/// Calls `visit` for every object that such an association leads to, with its namespace filled in.
/// The result class is looked up in the namespace of each object.
void visitAssociators(const Servers& servers, const Repository& repository, const Target& target,
                      const ObjectPath& source, const AssociationFilter& filter,
                      const std::function<void(const ObjectPath&)>& visit);

}  // namespace cimhost
