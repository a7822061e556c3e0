#include "cimhost/server/Command.h"
#include "cimhost/server/SchemaOptions.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>

namespace cimhost {
namespace {

std::size_t countClasses(const Repository& repository) {
    std::size_t count = 0;
    for (const std::string& name : repository.names()) count += repository.get(name).classCount();
    return count;
}

/// A registration for a class that does not exist would never be asked for anything.
bool reportUnknownClasses(const Repository& repository, const Registrations& registrations) {
    bool allKnown = true;
    for (const Registration& registration : registrations.all()) {
        const NameSpace* nameSpace = repository.find(registration.nameSpace);
        if (nameSpace != nullptr && nameSpace->findClass(registration.className) != nullptr)
            continue;
        std::fprintf(stderr, "cimhost: provider %s is registered for %s:%s, which does not exist\n",
                     registration.provider.c_str(), registration.nameSpace.c_str(),
                     registration.className.c_str());
        allKnown = false;
    }
    return allKnown;
}

int check(const SchemaOptions& options) {
    Repository repository;
    options.loadInto(repository);
    Registrations registrations;
    options.loadInto(registrations);
    if (!reportUnknownClasses(repository, registrations)) return 1;
    std::printf("%zu classes, %zu registrations\n", countClasses(repository),
                registrations.all().size());
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
