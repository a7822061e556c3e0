#pragma once

#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Repository.h"

#include <functional>
#include <optional>

/// The instances that need no provider: static ones, which came with the MOF, and built-in ones, of
/// classes that have no static ones. They can be read only. Pure functions, safe from several
/// threads.
namespace cimhost {

/// Calls `visit` for each instance of the class or its subclasses, with the instance's own class.
void visitHostInstances(const Repository& repository, const NameSpace& nameSpace,
                        const Class& ancestor,
                        const std::function<void(const Instance&, const Class&)>& visit);

/// The instance with this path, which must be one of its class's.
std::optional<Instance> findHostInstance(const Repository& repository, const NameSpace& nameSpace,
                                         const ObjectPath& path);

/// True when the class itself, subclasses aside, has static instances or is built in.
bool isHostClass(const NameSpace& nameSpace, const Class& definition) noexcept;

}  // namespace cimhost
