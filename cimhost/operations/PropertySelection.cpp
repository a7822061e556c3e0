#include "cimhost/operations/Operations.h"
#include "cimhost/repository/Names.h"

#include <algorithm>

namespace cimhost {

bool PropertySelection::lists(std::string_view property) const noexcept {
    if (limit && !limit->findProperty(property)) return false;
    if (!names) return true;
    return std::any_of(names->begin(), names->end(),
                       [property](const std::string& name) { return equalNames(name, property); });
}

}  // namespace cimhost
