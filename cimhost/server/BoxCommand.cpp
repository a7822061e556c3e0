#include "cimhost/server/Command.h"
#include "cimhost/server/CommandOptions.h"
#include "cimhost/server/Installation.h"

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace cimhost {
namespace {

using std::filesystem::path;

struct BoxOptions {
    std::string server = "wavek";
    std::string project;
    std::uint16_t port = 0;
    std::optional<std::uint32_t> maximumSeconds;
    bool console = false;
    bool list = false;
    std::string objectManager;
    std::string prefix = "/usr";
    std::string providerFolder;
    std::string cimSchema;
    std::string state;
};

constexpr const char* boxExamples = R"(Examples:
  cimhost box --server blade --project mine.toml
  wbemcli ei http://localhost:PORT/root/ktq:PYL_Fan
  cimhost box --server wavek --object-manager sfcb --prefix /opt/sfcb

What is typed while it runs changes the server: fan1-fails. It needs QEMU and a kernel of Debian's,
which is downloaded once; docs/machines.md says more. Exit status: 0 when it ended in order, 1 when
it could not start or the other object manager answers otherwise for no known reason, 2 for a
command line that makes no sense.)";

/// The folder with the package "box": beside a program that was built, or installed with it.
path packageHome(const path& program) {
    const path built = program.parent_path() / "machine";
    for (const path& home : {built, installedData()}) {
        if (std::filesystem::exists(home / "box/__main__.py")) return home;
    }
    throw std::runtime_error("the box is not there: neither " + (built / "box").string() + " nor " +
                             (installedData() / "box").string());
}

std::vector<std::string> commandLine(const BoxOptions& options, const path& program) {
    std::vector<std::string> words{
        "python3",        "-B",       "-m",           "box",    "--program",
        program.string(), "--server", options.server, "--port", std::to_string(options.port)};
    if (!options.project.empty()) words.insert(words.end(), {"--project", options.project});
    if (options.maximumSeconds) {
        words.insert(words.end(), {"--max-seconds", std::to_string(*options.maximumSeconds)});
    }
    if (options.console) words.emplace_back("--console");
    if (options.list) words.emplace_back("--list");
    if (options.objectManager.empty()) return words;
    for (const auto& [name, value] : std::initializer_list<std::pair<const char*, std::string>>{
             {"--object-manager", options.objectManager},
             {"--prefix", options.prefix},
             {"--provider-dir", options.providerFolder},
             {"--cim-schema", options.cimSchema},
             {"--state", options.state}}) {
        if (!value.empty()) words.insert(words.end(), {name, value});
    }
    return words;
}

/// Becomes the program that does it.
int run(const BoxOptions& options) {
    const path program = std::filesystem::read_symlink("/proc/self/exe");
    setenv("PYTHONPATH", packageHome(program).c_str(), 1);
    std::vector<std::string> words = commandLine(options, program);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execvp("python3", arguments.data());
    if (errno == ENOENT) throw std::runtime_error("there is no python3: apt-get install python3");
    throw std::system_error(errno, std::generic_category(), "python3");
}

/// Those of an object manager of others, which is compared with this one.
void addManagerOptions(CLI::App& command, CLI::Option& project, BoxOptions& options) {
    CLI::Option* manager =
        addValue(command, "--object-manager", options.objectManager, "NAME",
                 "Give this host's object manager the modules inside, ask it and cimhost the same, "
                 "tell what is equal and what differs, and end")
            ->check(CLI::IsMember({"openpegasus", "sfcb"}))
            ->excludes(&project);
    addValue(command, "--prefix", options.prefix, "DIR", "Where that object manager is installed")
        ->capture_default_str()
        ->needs(manager);
    addValue(command, "--provider-dir", options.providerFolder, "DIR",
             "A folder that it loads providers from, when it is not the usual one")
        ->needs(manager);
    addValue(command, "--cim-schema", options.cimSchema, "PATH",
             "The CIM schema for it, as pylcommon-register takes it")
        ->needs(manager);
    addValue(command, "--state", options.state, "DIR",
             "The folder of sfcb's own data, when it is not the usual one")
        ->needs(manager);
}

}  // namespace

void addBoxCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<BoxOptions>();
    CLI::App* command = application.add_subcommand(
        "box", "Run an object manager inside of a server that a virtual machine plays");
    addValue(*command, "--server", options->server, "NAME",
             "Which server: a name that --list tells, or the path of a folder with a server.toml")
        ->capture_default_str();
    command->add_flag("--list", options->list, "Tell the names of the servers and what they are");
    CLI::Option* project = command->add_option(
        "--project", options->project,
        "What is served inside, cimhost.toml(5); by default what this program serves by itself");
    project->type_name("FILE");
    addPort(*command, "--port", options->port,
            "TCP port of this host's loopback that leads inside");
    addMaximumSeconds(*command, options->maximumSeconds);
    command->add_flag("--console", options->console,
                      "Show what the guest's kernel and the object manager inside say");
    addManagerOptions(*command, *project, *options);
    command->footer(boxExamples);
    command->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace cimhost
