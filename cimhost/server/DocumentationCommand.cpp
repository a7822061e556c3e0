#include "cimhost/server/Command.h"
#include "cimhost/server/Documentation.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>

namespace cimhost {
namespace {

struct DocumentationOptions {
    std::filesystem::path folder;
    std::string date;
};

void write(const std::filesystem::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << text;
    if (!stream.flush()) throw std::runtime_error(file.string() + " cannot be written");
}

int document(const CLI::App& application, const DocumentationOptions& options) {
    write(options.folder / "cimhost.1", manualPage(application, options.date));
    for (const CLI::App* const each : application.get_subcommands(
             [](const CLI::App* command) { return !command->get_group().empty(); })) {
        write(options.folder / ("cimhost-" + each->get_name() + ".1"),
              manualPage(*each, options.date));
    }
    write(options.folder / "cimhost.toml.5",
          projectFilePage(*application.get_subcommand("serve"), options.date));
    write(options.folder / "cimhost.bash", bashCompletion(application));
    return 0;
}

}  // namespace

void addDocumentationCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<DocumentationOptions>();
    CLI::App* command = application.add_subcommand(
        "documentation", "Write manual pages and shell completion into a folder; for the build");
    command->group("");
    command->add_option("--date", options->date)->required();
    command->add_option("FOLDER", options->folder)->required();
    command->callback([options, &application, &chosen] {
        chosen = [options, &application] { return document(application, *options); };
    });
}

}  // namespace cimhost
