#pragma once

#include "cmpicpp/CmpiObjectPath.h"

#include <string>

namespace PYL {

/// What `read` gives, for a line of the log: its text must not fail the operation that it tells of,
/// so that what the object manager or an instance cannot give reads "<bad value>".
template <typename Read>
std::string logText(Read read) {
    try {
        return std::string(read().str());
    } catch (...) {
        return "<bad value>";
    }
}

inline std::string logText(const CmpiCpp::CmpiObjectPath& path) {
    return logText([&path]() -> const CmpiCpp::CmpiObjectPath& { return path; });
}

}  // namespace PYL
