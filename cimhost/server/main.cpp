#include "cimhost/server/Command.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

int complain(const char* message, int status) {
    std::fprintf(stderr, "cimhost: %s\n", message);
    return status;
}

std::string describeUsage(const CLI::App*, const CLI::Error& error) {
    return "cimhost: " + std::string(error.what()) + "\nRun with --help for more information.\n";
}

}  // namespace

int main(int argc, char** argv) try {
    CLI::App application(
        "A development object manager: hosts CMPI provider modules for WBEM clients.", "cimhost");
    cimhost::Command chosen;
    cimhost::addServeCommand(application, chosen);
    cimhost::addListenCommand(application, chosen);
    cimhost::addCheckCommand(application, chosen);
    cimhost::addMannersCommand(application, chosen);
    cimhost::addModuleHostCommand(application, chosen);
    cimhost::addPasswdCommand(application, chosen);
    application.require_subcommand(1);
    application.failure_message(describeUsage);
    application.set_version_flag("--version", "cimhost " CIMHOST_VERSION);
    try {
        application.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return application.exit(error) == 0 ? 0 : wrongUsage;
    }
    return chosen();
} catch (const cimhost::UsageError& error) {
    return complain(error.what(), wrongUsage);
} catch (const std::exception& error) {
    return complain(error.what(), failed);
}
