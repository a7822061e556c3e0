#pragma once

#include <string>

namespace CLI {
class App;
class Error;
}  // namespace CLI

namespace cimhost {

/// What a user reads whose command line makes no sense: the reason, which option or command was
/// meant where one is misspelt, and where help is. As CLI::App::failure_message wants it.
std::string describeUsage(const CLI::App* application, const CLI::Error& error);

}  // namespace cimhost
