#pragma once

#include <string>

namespace CLI {
class App;
}

/// Pages and scripts that say what the definitions of the commands and their options say.
namespace cimhost {

/// The page, in troff's man macros, of the program (application has no parent) or one of its
/// commands. The date is that of the page: 2026-05-01.
std::string manualPage(const CLI::App& application, const std::string& date);

/// The page cimhost.toml(5): the options of `serve` as keys of a project file.
std::string projectFilePage(const CLI::App& serve, const std::string& date);

/// Completes commands, options, files and the values of options that have a few; sourced by bash.
std::string bashCompletion(const CLI::App& application);

}  // namespace cimhost
