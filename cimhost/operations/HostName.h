#pragma once

#include <string>

namespace cimhost {

/// What this machine calls itself, or "localhost". Safe from several threads.
std::string hostName();

/// The class of the system that host objects belong to, as their keys name it.
constexpr const char* systemClassName = "CIM_ComputerSystem";

}  // namespace cimhost
