#include "cimhost/mof/MofComplaints.h"

#include <algorithm>

namespace cimhost {

void MofComplaints::add(const std::string& error, const std::string& className) {
    const bool follows = std::ranges::any_of(broken, [&](const std::string& name) {
        return error.find("'" + name + "' is not known") != std::string::npos;
    });
    const bool isTold = !errors.empty() && errors.back() == error;
    if (!follows && !isTold) errors.push_back(error);
    if (!className.empty()) broken.insert(className);
}

}  // namespace cimhost
