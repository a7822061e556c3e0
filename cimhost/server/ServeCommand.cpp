#include "cimhost/http/BasicAuth.h"
#include "cimhost/http/HttpServer.h"
#include "cimhost/http/TlsStream.h"
#include "cimhost/modules/CrashWords.h"
#include "cimhost/modules/RunningCall.h"
#include "cimhost/server/Command.h"
#include "cimhost/server/ConsoleLog.h"
#include "cimhost/server/ConsolePages.h"
#include "cimhost/server/EndDeadline.h"
#include "cimhost/server/EndSignals.h"
#include "cimhost/server/Installation.h"
#include "cimhost/server/ObjectManager.h"
#include "cimhost/server/RegistrationCheck.h"
#include "cimhost/server/Reloader.h"
#include "cimhost/server/ServeOptions.h"
#include "cimhost/server/StartWatch.h"
#include "cimhost/server/events/EventStream.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace cimhost {
namespace {

constexpr std::chrono::seconds requestGrace{5};
constexpr std::chrono::seconds killGrace{1};
constexpr std::chrono::seconds moduleGrace{1};
constexpr std::chrono::seconds cleanUpGrace{4};

constexpr const char* serveExample =
    "Without any schema, registration or project it serves all that is installed.\n"
    "\n"
    "Example:\n"
    "  cimhost serve --namespace root/ktq --schema base/base.mof --schema Uptime.mof \\\n"
    "      --registration uptime.registration --provider-dir build\n"
    "  wbemcli ei http://localhost:5988/root/ktq:PYL_Uptime\n"
    "\n"
    "Ends in order on SIGTERM and SIGINT. Exit status: 0 when it ended in order, 1 when it could "
    "not\n"
    "start or a module would not let go, 2 for a command line that makes no sense.";

/// What HTTP needs beside the handler, as the options have it.
struct Gate {
    std::unique_ptr<TlsContext> tls;
    std::unique_ptr<BasicAuth> authenticator;
    std::unique_ptr<AccessLog> accessLog;
    HostNames names;

    explicit Gate(const ServeOptions& options)
        : tls(options.usesTls()
                  ? std::make_unique<TlsContext>(options.tlsCertificate, options.tlsKey)
                  : nullptr),
          names({.others = options.hostNames, .certificate = tls.get()}) {
        if (!options.passwordFile.empty()) {
            authenticator = std::make_unique<BasicAuth>(PasswordFile(options.passwordFile));
        }
        if (!options.accessLog.empty()) accessLog = std::make_unique<AccessLog>(options.accessLog);
    }
};

/// In one write: who waits for the first line has the second one, too.
void announce(const HttpServer& server, const ServeOptions& options) {
    const std::string url =
        (options.usesTls() ? "https://" : "http://") + server.listener().name() + "/";
    const std::string console = options.console ? "Its console: " + url + "\n" : "";
    std::printf("cimhost is ready at %scimom\n%s", url.c_str(), console.c_str());
    std::fflush(stdout);
}

/// Code of a module is still running: nothing that it may touch can be taken down in order.
[[noreturn]] void leaveAtOnce(BrokerLog& log) {
    logHangingCalls(log);
    log.write(BrokerLog::Level::error, "cimhost",
              "a request did not end in time; leaving without unloading its module");
    std::_Exit(1);
}

/// Where each module has a process of its own, one that does not answer keeps no other from its
/// clean-up.
Shutdown endRequests(HttpServer& server, ObjectManager& manager) {
    if (server.stop(requestGrace)) return Shutdown::orderly;
    const bool hasEnded = manager.killBusyModules() && server.stop(killGrace);
    return hasEnded ? Shutdown::withLosses : Shutdown::incomplete;
}

/// What `cimhost check` would say, as far as it can be known without running code of modules.
void warn(const ServeOptions& options, const Repository& repository,
          const Registrations& registrations, BrokerLog& log) {
    for (const Findings& findings :
         {registrations.warnings(), checkClasses(repository, registrations),
          checkModuleFiles(registrations, options.providerFolders)}) {
        for (const std::string& finding : findings) {
            log.write(BrokerLog::Level::warning, "cimhost", finding);
        }
    }
}

/// Until the server is to end.
void run(const EndSignals& signals, Reloader& reloader, std::optional<std::chrono::seconds> time) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + time.value_or(std::chrono::seconds(0));
    while (signals.wait(time) == EndSignals::Reason::reload) {
        reloader.reload();
        if (time) time = std::chrono::ceil<std::chrono::seconds>(end - Clock::now());
    }
}

int serve(ServeOptions& options) {
    options.checkExposure();
    options.schema.takeInstalledUnlessNamed(installedData());
    if (options.console) options.schema.addConsole();
    const EndSignals signals;
    installCrashWords();
    // Never destroyed: modules may log to the very end.
    EventFeed* const feed = options.console ? new EventFeed : nullptr;
    ConsoleLog log(options.logLevel, options.logFormat, feed);
    log.takeLinesOfModules();
    std::optional<std::chrono::seconds> time;
    if (options.maximumSeconds) time = std::chrono::seconds(*options.maximumSeconds);
    StartWatch start(signals, log, time);
    std::optional<EndDeadline> deadline;  // outlives all that calls modules
    Repository repository;
    options.schema.loadInto(repository);
    Registrations registrations;
    options.schema.loadInto(registrations);
    if (options.checks) warn(options, repository, registrations, log);
    options.checkFiles(registrations);
    const Gate gate(options);
    ObjectManager manager(repository, std::move(registrations), options.providerFolders, log,
                          options.indications, options.manner, options.isolation(), options.results,
                          options.watches ? ModuleSource::copy : ModuleSource::file, feed);

    std::optional<EventStream> events;
    if (feed) events.emplace(*feed, EventHello{});
    ConsolePages pages(builtConsole(), events ? &*events : nullptr);
    const HttpServices services{.handler = manager.httpHandler(),
                                .limits = options.limits,
                                .authenticator = gate.authenticator.get(),
                                .accessLog = gate.accessLog.get(),
                                .pages = options.console ? &pages : nullptr,
                                .names = &gate.names};
    HttpServer server(ListenSocket(options.address, options.port), services, gate.tls.get());
    std::optional<Reloader> reloader;
    reloader.emplace(options, repository, manager, log);
    server.start();
    announce(server, options);
    const bool isAskedToEnd = start.finish();
    if (start.isReloadAsked()) reloader->reload();
    if (!isAskedToEnd) run(signals, *reloader, time);
    deadline.emplace(log, requestGrace + killGrace + moduleGrace + cleanUpGrace);
    reloader->end();
    if (gate.authenticator) gate.authenticator->end();
    if (feed) feed->end();
    Shutdown end = endRequests(server, manager);
    if (end != Shutdown::incomplete) {
        reloader.reset();
        end = std::max(end, manager.shutDown(moduleGrace));
    }
    if (end == Shutdown::incomplete) leaveAtOnce(log);
    return end == Shutdown::orderly ? 0 : 1;
}

}  // namespace

void addServeCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<ServeOptions>();
    CLI::App* command = application.add_subcommand("serve", "Serve CIM-XML requests over HTTP");
    options->addTo(*command);
    command->footer(serveExample);
    command->callback([options, &chosen] { chosen = [options] { return serve(*options); }; });
}

}  // namespace cimhost
