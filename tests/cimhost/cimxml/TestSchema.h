#pragma once

#include "cimhost/repository/Repository.h"

namespace cimhost {

/// Namespaces root/test and root/other with a few small classes, for tests.
void fillTestSchema(Repository& repository);

}  // namespace cimhost
