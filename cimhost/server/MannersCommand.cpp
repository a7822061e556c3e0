#include "cimhost/objects/Manner.h"
#include "cimhost/server/Command.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <memory>
#include <string>

namespace cimhost {
namespace {

constexpr std::array hosts = {"openpegasus", "sfcb", "strict", "mean"};

std::string cellsOf(const HabitRow& row) {
    std::string cells;
    for (std::size_t i = 0; i < hosts.size(); ++i) {
        cells += (row.hosts & (1U << i)) != 0 ? " yes |" : " |";
    }
    return cells;
}

int printTable() {
    std::puts(
        "| habit | what differs | openpegasus | sfcb | strict | mean | the library | a provider |\n"
        "| --- | --- | --- | --- | --- | --- | --- | --- |");
    for (const HabitRow& row : habitRows()) {
        std::printf("| `%s` | %s |%s %s | %s |\n", std::string(row.name).c_str(),
                    std::string(row.says).c_str(), cellsOf(row).c_str(),
                    std::string(row.library).c_str(), std::string(row.provider).c_str());
    }
    return 0;
}

int printManner(const Manner& manner) {
    for (const HabitRow& row : habitRows()) {
        if (!manner.has(row.habit)) continue;
        std::printf("%s\n    %s\n", std::string(row.name).c_str(), std::string(row.says).c_str());
    }
    return 0;
}

int show(const std::string& name) {
    if (name.empty()) return printTable();
    try {
        return printManner(Manner(name));
    } catch (const std::invalid_argument& error) {
        throw UsageError(error.what());
    }
}

}  // namespace

void addMannersCommand(CLI::App& application, Command& chosen) {
    const auto name = std::make_shared<std::string>();
    CLI::App* command = application.add_subcommand(
        "manners", "Show how other object managers behave: what serve --manner imitates");
    command->add_option("name", *name, "One manner's habits alone; without it all, as a table");
    command->callback([name, &chosen] { chosen = [name] { return show(*name); }; });
}

}  // namespace cimhost
