#pragma once

#include "cimhost/repository/Repository.h"

namespace cimhost {

/// Adds the classes in which cimhost tells of its modules, in a namespace of its own, root/cimhost;
/// those that are declared there already stay. Throws MofError where what is there contradicts
/// them.
void addConsoleClasses(Repository& repository);

}  // namespace cimhost
