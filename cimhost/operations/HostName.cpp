#include "cimhost/operations/HostName.h"

#include <unistd.h>

#include <array>
#include <climits>

namespace cimhost {

std::string hostName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    // The last byte stays zero, whatever gethostname does with a name that is too long.
    if (gethostname(name.data(), name.size() - 1) != 0 || name[0] == '\0') return "localhost";
    return name.data();
}

}  // namespace cimhost
