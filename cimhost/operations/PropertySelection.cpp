#include "cimhost/operations/Operations.h"
#include "cimhost/repository/Names.h"

namespace cimhost {

bool PropertySelection::lists(std::string_view property) const noexcept {
    if (limit && !limit->findProperty(property)) return false;
    return !names || containsName(*names, property);
}

}  // namespace cimhost
