#include "cimhost/http/PasswordFile.h"
#include "cimhost/http/PasswordHash.h"
#include "cimhost/server/Command.h"
#include "cimhost/server/FileTrust.h"

#include <CLI/CLI.hpp>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <memory>

namespace cimhost {
namespace {

/// Keeps a terminal from showing what is typed.
class SilentTerminal {
public:
    SilentTerminal() {
        _isTerminal = isatty(STDIN_FILENO) == 1 && tcgetattr(STDIN_FILENO, &_before) == 0;
        if (!_isTerminal) return;
        termios silent = _before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~SilentTerminal() {
        if (_isTerminal) tcsetattr(STDIN_FILENO, TCSAFLUSH, &_before);
    }
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;

    bool isTerminal() const noexcept { return _isTerminal; }

private:
    termios _before{};
    bool _isTerminal;
};

std::string askLine(const SilentTerminal& terminal, const char* prompt) {
    if (terminal.isTerminal()) std::fputs(prompt, stderr);
    std::string line;
    std::getline(std::cin, line);
    if (terminal.isTerminal()) std::fputs("\n", stderr);
    if (line.empty()) throw std::runtime_error("no password given");
    return line;
}

/// One line of standard input; asked for twice when somebody types it.
std::string readPassword() {
    const SilentTerminal terminal;
    std::string password = askLine(terminal, "Password: ");
    if (terminal.isTerminal() && askLine(terminal, "Again: ") != password) {
        throw std::runtime_error("the two passwords differ");
    }
    return password;
}

int setPassword(const std::string& file, const std::string& user) {
    if (!isUserName(user)) throw UsageError("'" + user + "' cannot be a user name");
    // What is read goes on into a file of this process's own.
    if (const auto distrust = distrustOf(file, FileUse::passwords)) {
        throw std::runtime_error(*distrust);
    }
    PasswordFile passwords = std::filesystem::exists(file) ? PasswordFile(file) : PasswordFile();
    std::string password = readPassword();
    passwords.set(user, hashPassword(password));
    wipe(password);
    passwords.save(file);
    return 0;
}

}  // namespace

void addPasswdCommand(CLI::App& application, Command& chosen) {
    struct Options {
        std::string file;
        std::string user;
    };
    const auto options = std::make_shared<Options>();
    CLI::App* command = application.add_subcommand(
        "passwd", "Set a user's password in a password file, which is made when it is not there");
    command->add_option("file", options->file, "The password file")->required();
    command->add_option("user", options->user, "The user's name")->required();
    command->footer(
        "The password is read from standard input, as one line. A running server learns of it\n"
        "at its next start.");
    command->callback([options, &chosen] {
        chosen = [options] { return setPassword(options->file, options->user); };
    });
}

}  // namespace cimhost
