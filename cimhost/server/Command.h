#pragma once

#include <functional>
#include <stdexcept>

namespace CLI {
class App;
}

namespace cimhost {

/// The work of a command that the command line chose; returns the exit status. Throws UsageError,
/// or another std::exception whose text is fit for the user.
using Command = std::function<int()>;

/// The command line asks for what cannot be: exit status 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Each adds a subcommand that, when the command line names it, becomes the chosen command.
void addBoxCommand(CLI::App& application, Command& chosen);
void addServeCommand(CLI::App& application, Command& chosen);
void addCheckCommand(CLI::App& application, Command& chosen);
void addModuleHostCommand(CLI::App& application, Command& chosen);
void addMannersCommand(CLI::App& application, Command& chosen);
void addNewCommand(CLI::App& application, Command& chosen);
void addPasswdCommand(CLI::App& application, Command& chosen);
void addDocumentationCommand(CLI::App& application, Command& chosen);
void addListenCommand(CLI::App& application, Command& chosen);
void addConsoleCommand(CLI::App& application, Command& chosen);

}  // namespace cimhost
