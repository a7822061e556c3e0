#include "cimhost/server/Command.h"
#include "cimhost/server/SchemaOptions.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace cimhost {
namespace {

std::size_t countClasses(const Repository& repository) {
    std::size_t count = 0;
    for (const std::string& name : repository.names()) count += repository.get(name).classCount();
    return count;
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

int check(const SchemaOptions& options) {
    Repository repository;
    options.loadInto(repository);
    Registrations registrations;
    options.loadInto(registrations);
    for (const std::string& warning : registrations.warnings()) {
        std::fprintf(stderr, "cimhost: warning: %s\n", warning.c_str());
    }
    const std::vector<std::string> complaints = unknownClasses(repository, registrations);
    for (const std::string& complaint : complaints) {
        std::fprintf(stderr, "cimhost: %s\n", complaint.c_str());
    }
    if (!complaints.empty()) return 1;
    std::printf("%s, %s\n", counted(countClasses(repository), "class", "classes").c_str(),
                counted(registrations.all().size(), "registration", "registrations").c_str());
    return 0;
}

}  // namespace

void addCheckCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<SchemaOptions>();
    CLI::App* command =
        application.add_subcommand("check", "Check MOF and registration files, and serve nothing");
    options->addTo(*command);
    command->callback([options, &chosen] { chosen = [options] { return check(*options); }; });
}

}  // namespace cimhost
