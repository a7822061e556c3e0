#pragma once

#include "cimhost/operations/Operations.h"
#include "cimhost/operations/Target.h"
#include "cimhost/repository/Repository.h"

#include <functional>
#include <string_view>
#include <vector>

/// Walks over instances of association classes. Pure functions, safe from several threads.
namespace cimhost {

/// Says whether static instances of a class count; those of registered classes do not.
using CountsClass = std::function<bool(const Class&)>;

/// Calls `visit` for each of the association instances, of the target's namespace, that refers to
/// the source in the role, and is of the association class or its subclasses. Empty names do not
/// filter.
void visitReferences(const std::vector<Instance>& instances, const Target& target,
                     const ObjectPath& source, std::string_view associationClass,
                     std::string_view role,
                     const std::function<void(const Instance&, const Class&)>& visit);

/// Calls `visit` for every object that such an association leads to, with its namespace filled in.
/// The result class is looked up in the namespace of each object.
void visitAssociators(const std::vector<Instance>& instances, const Repository& repository,
                      const Target& target, const ObjectPath& source,
                      const AssociationFilter& filter,
                      const std::function<void(const ObjectPath&)>& visit);

/// visitReferences of the static instances in the target's namespace.
void visitHostReferences(const Target& target, const ObjectPath& source,
                         std::string_view associationClass, std::string_view role,
                         const CountsClass& counts,
                         const std::function<void(const Instance&, const Class&)>& visit);

/// visitAssociators of these.
void visitHostAssociators(const Repository& repository, const Target& target,
                          const ObjectPath& source, const AssociationFilter& filter,
                          const CountsClass& counts,
                          const std::function<void(const ObjectPath&)>& visit);

}  // namespace cimhost
