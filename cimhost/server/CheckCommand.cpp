#include "cimhost/server/Command.h"
#include "cimhost/server/CommandOptions.h"
#include "cimhost/server/Findings.h"
#include "cimhost/server/ModuleCheck.h"
#include "cimhost/server/ProjectFile.h"
#include "cimhost/server/RegistrationCheck.h"
#include "cimhost/server/SchemaOptions.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

namespace cimhost {
namespace {

constexpr const char* checkExample =
    "Example:\n"
    "  cimhost check --namespace root/x --schema Fans.mof --registration fans.registration \\\n"
    "      --provider-dir build --ask\n"
    "\n"
    "Modules are opened in processes of their own, so that one that crashes is a mistake like\n"
    "others. Exit status: 0 when nothing is wrong, 1 for a mistake, 2 for a command line that "
    "makes\n"
    "no sense.";

struct CheckOptions {
    std::filesystem::path project;
    SchemaOptions schema;
    ModuleCheckOptions modules;
    bool isJson = false;
};

std::size_t countClasses(const Repository& repository) {
    std::size_t count = 0;
    for (const std::string& name : repository.names()) count += repository.get(name).classCount();
    return count;
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

void add(Findings& findings, const Findings& more) {
    for (const std::string& each : more) {
        const bool isKnown = std::ranges::find(findings, each) != findings.end();
        if (!isKnown) findings.push_back(each);
    }
}

/// The registrations but for those of classes that are not there because they are broken.
Registrations sound(const Registrations& all, const MofComplaints& complaints) {
    Registrations registrations;
    for (const Registration& each : all.all()) {
        if (!complaints.broken.contains(each.className)) registrations.add(each);
    }
    return registrations;
}

void print(const Findings& errors, const Findings& warnings) {
    for (const std::string& warning : warnings) {
        std::fprintf(stderr, "cimhost: warning: %s\n", warning.c_str());
    }
    for (const std::string& error : errors) std::fprintf(stderr, "cimhost: %s\n", error.c_str());
}

int check(const CheckOptions& options) {
    Repository repository;
    MofComplaints complaints;
    options.schema.loadInto(repository, &complaints);
    Registrations all;
    all.keepErrors();
    options.schema.loadInto(all);
    const Registrations registrations = sound(all, complaints);
    Findings errors = complaints.errors;
    Findings warnings = all.warnings();
    add(errors, all.errors());
    add(errors, checkClasses(repository, registrations));
    if (!options.modules.folders.empty()) {
        add(errors, checkModuleFiles(registrations, options.modules.folders));
        const ModuleFindings opened = checkModules(repository, registrations, options.modules);
        add(errors, opened.errors);
        add(warnings, opened.doubts);
    }
    if (options.isJson) {
        std::fputs(findingsAsJson(errors, warnings).c_str(), stdout);
    } else {
        print(errors, warnings);
    }
    if (!errors.empty()) return 1;
    if (options.isJson) return 0;
    std::printf("%s, %s\n", counted(countClasses(repository), "class", "classes").c_str(),
                counted(all.all().size(), "registration", "registrations").c_str());
    return 0;
}

}  // namespace

void addCheckCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* command = application.add_subcommand(
        "check", "Tell what is wrong with MOF, registrations and modules, and serve nothing");
    addProjectOption(*command, options->schema, options->project);
    options->schema.addTo(*command);
    CLI::Option* folders =
        addList(*command, "--provider-dir", options->modules.folders, "DIR",
                "Open the registered modules too, lib<Module>.so in this folder; may be repeated");
    command
        ->add_flag("--ask", options->modules.asks,
                   "And ask their providers for instances, to hold the answers against the classes")
        ->needs(folders);
    command->add_flag("--json", options->isJson, "Print what is wrong as JSON");
    command->footer(checkExample);
    command->callback([options, &chosen] { chosen = [options] { return check(*options); }; });
}

}  // namespace cimhost
