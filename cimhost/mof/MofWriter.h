#pragma once

#include "cimhost/repository/Instance.h"

#include <string>
#include <vector>

namespace cimhost {

/// The instances as MOF that readInstances reads: a property a line, those that are NULL left out,
/// a `#pragma namespace` wherever it changes. Throws CimError failed for what MOF has no literal
/// for: U+0000, text that is not UTF-8, and reals that are no numbers. Safe from several threads.
std::string writeInstances(const std::vector<Instance>& instances);

}  // namespace cimhost
