#include "cimhost/server/Command.h"
#include "cimhost/server/UsageWords.h"

#include <CLI/CLI.hpp>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

int complain(const char* message, int status) {
    std::fprintf(stderr, "cimhost: %s\n", message);
    return status;
}

/// Each heap keeps what the largest request of its threads took. By default there are eight for
/// each processor, and as many threads wait for clients; one for each serves as many at work.
void limitHeaps() noexcept {
    if (std::getenv("MALLOC_ARENA_MAX")) return;
    mallopt(M_ARENA_MAX, static_cast<int>(std::max(2U, std::thread::hardware_concurrency())));
}

}  // namespace

int main(int argc, char** argv) try {
    limitHeaps();
    CLI::App application(
        "A development object manager: hosts CMPI provider modules for WBEM clients.", "cimhost");
    cimhost::Command chosen;
    cimhost::addServeCommand(application, chosen);
    cimhost::addListenCommand(application, chosen);
    cimhost::addConsoleCommand(application, chosen);
    cimhost::addCheckCommand(application, chosen);
    cimhost::addMannersCommand(application, chosen);
    cimhost::addModuleHostCommand(application, chosen);
    cimhost::addNewCommand(application, chosen);
    cimhost::addBoxCommand(application, chosen);
    cimhost::addPasswdCommand(application, chosen);
    cimhost::addDocumentationCommand(application, chosen);
    application.require_subcommand(1);
    application.failure_message(cimhost::describeUsage);
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
