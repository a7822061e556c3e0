#pragma once

#include "cimhost/repository/Names.h"

#include <set>
#include <string>
#include <vector>

namespace cimhost {

/// All that is wrong with MOF texts, for a reader who does not want to hear of one error at a time.
struct MofComplaints {
    std::vector<std::string> errors;         ///< as MofError has them
    std::set<std::string, NameLess> broken;  ///< classes that are not there because of these

    /// Adds an error in what declares the class, or in what declares none. One that only follows
    /// from a class that is broken is passed over.
    void add(const std::string& error, const std::string& className);
};

}  // namespace cimhost
