#include "cimhost/modules/CrashWords.h"
#include "cimhost/server/Command.h"
#include "cimhost/server/ConsoleLog.h"
#include "cimhost/server/EndDeadline.h"
#include "cimhost/server/EndSignals.h"
#include "cimhost/server/SchemaOptions.h"
#include "cimhost/server/isolation/ModuleService.h"

#include <CLI/CLI.hpp>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <system_error>

namespace cimhost {
namespace {

constexpr int controlDescriptor = 3;
constexpr std::chrono::seconds ownCallGrace{1};
constexpr std::chrono::seconds ownCleanUpGrace{2};

struct ModuleHostOptions {
    SchemaOptions schema;
    std::vector<std::filesystem::path> providerFolders;
    std::string manner = "standard";
    std::string logLevel;
    std::string logFormat;
    std::string user;
    pid_t parent = 0;
    std::string module;
};

void require(bool isDone, const char* what) {
    if (!isDone) throw std::system_error(errno, std::generic_category(), what);
}

/// From here on the process has the user's rights and can get no others.
void becomeUser(const std::string& name) {
    errno = 0;
    const passwd* const user = getpwnam(name.c_str());
    require(user, "user");
    const uid_t uid = user->pw_uid;
    const gid_t gid = user->pw_gid;
    require(initgroups(name.c_str(), gid) == 0, "initgroups");
    require(setresgid(gid, gid, gid) == 0, "setresgid");
    require(setresuid(uid, uid, uid) == 0, "setresuid");
    require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "no new privileges");
    // A change of user takes the core file away from one that crashes.
    require(prctl(PR_SET_DUMPABLE, 1, 0, 0, 0) == 0, "core files");
}

/// The process ends with the one that started it, even where that is killed.
void dieWith(pid_t parent) {
    require(prctl(PR_SET_PDEATHSIG, SIGKILL) == 0, "parent's death");
    if (getppid() != parent) std::_Exit(1);
}

BrokerLog::Level levelOf(const std::string& name) {
    for (const auto level : {BrokerLog::Level::error, BrokerLog::Level::warning,
                             BrokerLog::Level::information, BrokerLog::Level::debug}) {
        if (levelName(level) == name) return level;
    }
    return BrokerLog::Level::information;
}

int hostModule(const ModuleHostOptions& options) {
    const EndSignals signals;
    installCrashWords();
    ConsoleLog log(levelOf(options.logLevel),
                   options.logFormat == "json" ? LogFormat::json : LogFormat::text);
    log.takeLinesOfModules();
    std::optional<EndDeadline> deadline;  // outlives all that calls the module
    // With the rights of the server still, who may read what the user of the module may not.
    Repository repository;
    options.schema.loadInto(repository);
    Registrations registrations;
    options.schema.loadInto(registrations);
    if (!options.user.empty()) becomeUser(options.user);
    dieWith(options.parent);
    ModuleService service(repository, std::move(registrations), options.providerFolders, log,
                          Manner(options.manner), Descriptor(controlDescriptor));
    service.serve();
    deadline.emplace(log, ownCallGrace + ownCleanUpGrace);
    if (!service.shutDown(ownCallGrace)) std::_Exit(1);
    return 0;
}

}  // namespace

void addModuleHostCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<ModuleHostOptions>();
    CLI::App* command = application.add_subcommand(
        "module-host", "What 'serve --isolate' runs for each module; of no use by itself");
    command->group("");
    options->schema.addTo(*command);
    command->add_option("--provider-dir", options->providerFolders)->allow_extra_args(false);
    command->add_option("--manner", options->manner);
    command->add_option("--log-level", options->logLevel);
    command->add_option("--log-format", options->logFormat);
    command->add_option("--user", options->user);
    command->add_flag_callback("--console", [options] { options->schema.addConsole(); });
    command->add_option("--parent", options->parent)->required();
    command->add_option("MODULE", options->module)->required();
    command->callback([options, &chosen] { chosen = [options] { return hostModule(*options); }; });
}

}  // namespace cimhost
