#include "cimhost/server/ServeOptions.h"

#include "cimhost/http/ListenSocket.h"
#include "cimhost/server/Command.h"
#include "cimhost/server/CommandOptions.h"
#include "cimhost/server/ConsoleLog.h"
#include "cimhost/server/FileTrust.h"
#include "cimhost/server/Installation.h"
#include "cimhost/server/ProjectFile.h"

#include <pwd.h>
#include <unistd.h>

#include <map>
#include <set>
#include <stdexcept>

namespace cimhost {
namespace {

CLI::Option* addSeconds(CLI::App& command, const std::string& name, std::chrono::milliseconds& time,
                        const std::string& description) {
    const auto setTime = [&time](double seconds) {
        time = std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
    };
    return command.add_option_function<double>(name, setTime, description)
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 86400.0))
        ->default_str(std::to_string(time.count() / 1000));
}

void requireTrust(const std::filesystem::path& file, FileUse use) {
    if (const auto distrust = distrustOf(file, use)) throw std::runtime_error(*distrust);
}

}  // namespace

void ServeOptions::addTo(CLI::App& command) {
    addProjectOption(command, schema, projectFile);
    schema.addTo(command);
    providerFolders = {installedModules()};
    addList(
        command, "--provider-dir", providerFolders, "DIR",
        "Where lib<Module>.so is looked for, by default seen from this program; may be repeated")
        ->default_str(CIMHOST_MODULES_FROM_PROGRAM)
        ->group("Schema");
    _addNetworkOptions(command);
    _addLimitOptions(command);
    _addIsolationOptions(command);
    _addIndicationOptions(command);
    _addRunOptions(command);
}

void ServeOptions::_addNetworkOptions(CLI::App& command) {
    command.option_defaults()->group("Network");
    addValue(command, "--listen", address, "ADDRESS",
             "Numeric address to listen at; one that is not loopback needs --tls-cert, "
             "--tls-key and --password-file")
        ->capture_default_str();
    addPort(command, "--port", port, "TCP port");
    addHostNames(command, hostNames);
    auto* certificate = addValue(command, "--tls-cert", tlsCertificate, "FILE",
                                 "PEM file with certificate and chain");
    auto* key =
        addValue(command, "--tls-key", tlsKey, "FILE", "PEM file with the certificate's key");
    certificate->needs(key);
    key->needs(certificate);
    addValue(command, "--password-file", passwordFile, "FILE",
             "Only users in this file may come in; 'cimhost passwd' makes it");
}

void ServeOptions::_addLimitOptions(CLI::App& command) {
    command.option_defaults()->group("Limits");
    addNumber(command, "--max-connections", limits.connections, 1, 10000,
              "Connections served at once");
    addNumber(command, "--max-body", limits.bodyBytes, std::uint64_t{1}, std::uint64_t{1} << 30U,
              "Longest request body", "BYTES");
    addNumber(command, "--body-memory", limits.bodyMemoryBytes, std::uint64_t{0},
              std::uint64_t{1} << 40U,
              "Request bodies that may be there at once, all together but the first 64 KiB of "
              "each; one more is answered 503",
              "BYTES");
    addNumber(command, "--spool-memory", limits.spoolMemoryBytes, std::uint64_t{0},
              std::uint64_t{1} << 40U,
              "Of replies, how much may wait in memory for clients that do not read them", "BYTES");
    addNumber(command, "--spool-disk", limits.spoolDiskBytes, std::uint64_t{0},
              std::uint64_t{1} << 50U,
              "How much more of them may wait in temporary files, in TMPDIR or /tmp; a reply "
              "that finds no room ends with an error",
              "BYTES");
    addSeconds(command, "--idle-time", limits.idleTime,
               "How long a connection may stay without request");
    addSeconds(command, "--request-time", limits.requestTime,
               "How long a request may take to arrive; one second more for each 256 KiB of body");
    addSeconds(command, "--reply-time", limits.replyTime,
               "How long a client may take for each 64 KiB of a reply");
}

void ServeOptions::_addIsolationOptions(CLI::App& command) {
    command.option_defaults()->group("Isolation");
    auto* isolate =
        command.add_flag("--isolate", isolates, "Run each module in a process of its own");
    addValue(command, "--isolate-user", isolateUser, "NAME",
             "Run those processes as this user, without rights that it has not")
        ->needs(isolate);
    addSeconds(command, "--provider-time", providerTime,
               "How long such a process may be silent before it is killed")
        ->needs(isolate);
}

std::optional<IsolationSettings> ServeOptions::isolation() const {
    if (!isolates) return std::nullopt;
    IsolationSettings settings;
    settings.providerTime = providerTime;
    settings.command = {std::filesystem::read_symlink("/proc/self/exe"),
                        "module-host",
                        "--parent",
                        std::to_string(getpid()),
                        "--manner",
                        std::string(manner.name()),
                        "--log-level",
                        std::string(levelName(logLevel)),
                        "--log-format",
                        logFormat == LogFormat::json ? "json" : "text"};
    if (!isolateUser.empty()) {
        if (geteuid() != 0) throw UsageError("--isolate-user needs the rights of root");
        if (!getpwnam(isolateUser.c_str())) {
            throw UsageError("--isolate-user: there is no user " + isolateUser);
        }
        settings.command.insert(settings.command.end(), {"--user", isolateUser});
    }
    if (console) settings.command.emplace_back("--console");
    for (const std::string& word : schema.arguments()) settings.command.push_back(word);
    for (const std::filesystem::path& folder : providerFolders) {
        settings.command.insert(settings.command.end(), {"--provider-dir", folder});
    }
    return settings;
}

void ServeOptions::_addIndicationOptions(CLI::App& command) {
    command.option_defaults()->group("Indications");
    DeliverySettings& delivery = indications.delivery;
    addValue(command, "--state", indications.stateFile, "FILE",
             "Keep subscriptions in this file; without it they end with the server");
    addNumber(command, "--delivery-attempts", delivery.manner.attempts, 0, 1000,
              "How often an indication that a listener did not take is sent again");
    command
        .add_option_function<std::uint32_t>(
            "--delivery-interval",
            [&delivery](std::uint32_t seconds) {
                delivery.manner.interval = std::chrono::seconds(seconds);
            },
            "How long to wait between these")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 86400))
        ->default_str(std::to_string(delivery.manner.interval.count()));
    addNumber(command, "--delivery-queue", delivery.queueItems, 1, 1000000,
              "Indications that may wait for one listener; more are dropped and counted");
    addSeconds(command, "--delivery-time", delivery.attemptTime,
               "How long a listener may take for one indication, from connecting to its answer");
}

void ServeOptions::_addRunOptions(CLI::App& command) {
    command.option_defaults()->group("Running");
    command
        .add_option_function<std::string>(
            "--manner",
            [this](const std::string& name) {
                try {
                    manner = Manner(name);
                } catch (const std::invalid_argument& error) {
                    throw CLI::ValidationError("--manner", error.what());
                }
            },
            "Behave as another object manager does; 'cimhost manners' tells how")
        ->type_name("NAME")
        ->default_str("standard");
    const std::map<std::string, ResultPolicy> policies = {{"warn", ResultPolicy::warn},
                                                          {"refuse", ResultPolicy::refuse},
                                                          {"pass", ResultPolicy::pass}};
    addValue(command, "--results", results, "POLICY",
             "What becomes of results of providers that are not as their class declares them: warn "
             "leaves them out and tells once, refuse fails the request, pass sends them")
        ->transform(CLI::CheckedTransformer(policies).description("warn, refuse or pass"))
        ->default_str("warn");
    const std::map<std::string, BrokerLog::Level> levels = [] {
        std::map<std::string, BrokerLog::Level> names;
        for (const auto level : {BrokerLog::Level::error, BrokerLog::Level::warning,
                                 BrokerLog::Level::information, BrokerLog::Level::debug}) {
            names.emplace(levelName(level), level);
        }
        return names;
    }();
    addValue(command, "--access-log", accessLog, "FILE",
             "Write a line a request to the file; - is standard output");
    command.add_flag("!--no-check", checks,
                     "Say nothing at the start of what is wrong with registrations and modules");
    addValue(command, "--log-level", logLevel, "LEVEL",
             "Least urgent lines to write to standard error, those of modules too")
        ->transform(CLI::CheckedTransformer(levels, CLI::ignore_case)
                        .description("error, warning, information or debug"))
        ->default_str("information");
    command.add_flag(
        "!--no-console", console,
        "Serve no page to browsers, for whom GET is answered 405, and no root/cimhost");
    const std::map<std::string, LogFormat> formats = {{"text", LogFormat::text},
                                                      {"json", LogFormat::json}};
    addValue(command, "--log-format", logFormat, "FORMAT",
             "How lines on standard error look: text, or json, an object a line")
        ->transform(CLI::CheckedTransformer(formats).description("text or json"))
        ->default_str("text");
    command.add_flag("--watch", watches,
                     "Take modules, MOF and registration files into service when they change, as "
                     "SIGHUP does once");
    addMaximumSeconds(command, maximumSeconds);
}

void ServeOptions::checkExposure() const {
    if (isLoopback(address) || (usesTls() && !passwordFile.empty())) return;
    throw UsageError("--listen " + address +
                     " lets other machines in: that needs --tls-cert, --tls-key and "
                     "--password-file (127.0.0.1 and ::1 do without)");
}

void ServeOptions::checkFiles(const Registrations& registrations) const {
    if (!passwordFile.empty()) requireTrust(passwordFile, FileUse::passwords);
    if (!tlsKey.empty()) requireTrust(tlsKey, FileUse::privateKey);
    if (indications.stateFile) requireTrust(*indications.stateFile, FileUse::state);
    if (!projectFile.empty()) requireTrust(projectFile, FileUse::project);
    checkCode(registrations);
}

void ServeOptions::checkCode(const Registrations& registrations) const {
    for (const auto& file : schema.registrations()) requireTrust(file, FileUse::registration);
    std::set<std::string> modules;
    for (const Registration& each : registrations.all()) modules.insert(each.module);
    for (const auto& folder : providerFolders) {
        requireTrust(folder, FileUse::moduleFolder);
        for (const std::string& module : modules) {
            requireTrust(folder / ("lib" + module + ".so"), FileUse::module);
        }
    }
}

}  // namespace cimhost
