#pragma once

#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Repository.h"

#include <array>
#include <string_view>
#include <vector>

namespace cimhost {

/// The classes whose instances the host makes itself where a namespace has the class and no
/// provider serves it: CIM_ObjectManager, CIM_Namespace, __Namespace.
inline constexpr auto builtInClasses =
    std::to_array<std::string_view>({"CIM_ObjectManager", "CIM_Namespace", "__Namespace"});

/// The instances of one of these classes, as seen in this namespace; each has the properties that
/// the class there declares. Empty for any other class. Safe from several threads.
///
/// There is one CIM_ObjectManager, a CIM_Namespace for each namespace of the repository, and a
/// __Namespace for each namespace below this one, named relative to it.
std::vector<Instance> builtInInstances(const Repository& repository, const NameSpace& nameSpace,
                                       const Class& definition);

}  // namespace cimhost
