#include "cimhost/server/UsageWords.h"

#include "cimhost/repository/NearestName.h"

#include <CLI/CLI.hpp>

#include <vector>

namespace cimhost {
namespace {

std::vector<std::string> optionsOf(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
}

std::vector<std::string> commandsOf(const CLI::App& application) {
    std::vector<std::string> names;
    for (const CLI::App* command : application.get_subcommands({})) {
        if (!command->get_group().empty()) names.push_back(command->get_name());
    }
    return names;
}

std::string meant(const CLI::App& application, const std::string& word) {
    const std::vector<CLI::App*> chosen = application.get_subcommands();
    const CLI::App& command = chosen.empty() ? application : *chosen.front();
    const bool isOption = word.starts_with("--");
    if (!isOption && !chosen.empty()) return {};
    return didYouMean(word.substr(0, word.find('=')),
                      isOption ? optionsOf(command) : commandsOf(application));
}

}  // namespace

std::string describeUsage(const CLI::App* application, const CLI::Error& error) {
    std::string reason = error.what();
    const std::vector<std::string> unknown = application->remaining(true);
    if (!unknown.empty()) {
        const bool isCommand = application->get_subcommands().empty() && unknown[0][0] != '-';
        reason = (isCommand ? "there is no command '" : "'") + unknown[0] +
                 (isCommand ? "'" : "' was not expected") + meant(*application, unknown[0]);
    }
    return "cimhost: " + reason + "\nRun with --help for more information.\n";
}

}  // namespace cimhost
