#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace cimhost {

/// Adds --host-name to a command that serves; see HostNames for what the names are for.
CLI::Option* addHostNameOption(CLI::App& command, std::vector<std::string>& names);

}  // namespace cimhost
