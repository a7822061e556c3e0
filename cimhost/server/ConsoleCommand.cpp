#include "cimhost/http/HttpServer.h"
#include "cimhost/server/CimXmlAdapter.h"
#include "cimhost/server/Command.h"
#include "cimhost/server/CommandOptions.h"
#include "cimhost/server/ConsolePages.h"
#include "cimhost/server/ConsoleProxy.h"
#include "cimhost/server/ConsoleTarget.h"
#include "cimhost/server/EndSignals.h"
#include "cimhost/server/events/AlertEvent.h"
#include "cimhost/server/events/EventStream.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace cimhost {
namespace {

constexpr std::chrono::seconds consoleGrace{2};
constexpr std::size_t largestIndication = 1024 * 1024;

constexpr const char* consoleExample =
    "Example:\n"
    "  cimhost console --target https://server.example:5989\n"
    "and open http://127.0.0.1:5987/ in a browser. It asks for the user and password of the\n"
    "target, and speaks to this program alone, which passes on what it asks.\n"
    "\n"
    "Ends in order on SIGTERM and SIGINT. Exit status: 0 when it ended in order, 1 when it could\n"
    "not start, 2 for a command line that makes no sense.";

struct ConsoleOptions {
    std::string target;
    std::uint16_t port = 5987;
    std::string authorities;
    bool isInsecure = false;
    std::string listenAddress;
    std::uint16_t listenPort = 0;
    std::optional<std::uint32_t> maximumSeconds;
};

/// Makes alerts of the indications that a target sends.
class Alerts {
public:
    explicit Alerts(EventFeed& feed)
        : _handler([&feed](const Instance& each) { _tell(feed, each); }) {}

    HttpHandler& httpHandler() noexcept { return _adapter; }

private:
    static void _tell(EventFeed& feed, const Instance& indication) {
        const PropertyValue* const filter = indication.find("IndicationFilterName");
        const Text* const name = filter ? filter->value.get<Text>() : nullptr;
        const PropertySelection all;
        tell(feed, {indication, nullptr, all, name ? std::string_view(*name) : ""});
    }

    ExportHandler _handler;
    ExportAdapter _adapter{_handler};
};

/// Where targets send indications to: a socket that takes nothing else.
class IndicationDoor {
public:
    IndicationDoor(const ConsoleOptions& options, HttpHandler& alerts)
        : _server(ListenSocket(options.listenAddress, options.listenPort), _services(alerts)) {
        _server.start();
    }

    std::string url() const { return "http://" + _server.listener().name() + "/"; }
    bool stop() { return _server.stop(consoleGrace); }

private:
    HttpServices _services(HttpHandler& alerts) {
        _limits.bodyBytes = largestIndication;
        return {.handler = alerts, .limits = _limits, .names = &_names};
    }

    HttpLimits _limits;
    HostNames _names;
    HttpServer _server;
};

std::optional<TlsTrust> trustOf(const ConsoleOptions& options, const ConsoleTarget& target) {
    if (!target.usesTls) return std::nullopt;
    return options.isInsecure ? TlsTrust::blind() : TlsTrust(options.authorities);
}

void warn(const std::string& words) {
    std::fprintf(stderr, "cimhost: warning: %s\n", words.c_str());
}

void warnOfRisks(const ConsoleOptions& options, const ConsoleTarget& target) {
    if (!target.usesTls && !isLoopback(target.host)) {
        warn("passwords and requests go to " + target.host +
             " without TLS, for anybody on the way to read");
    }
    if (target.usesTls && options.isInsecure) {
        warn("--insecure: whoever answers as " + target.host +
             " is taken for it, and gets the passwords");
    }
}

/// Empty where the target has no way to send indications.
std::string destinationFor(const ConsoleTarget& target, const ListenSocket& listener,
                           const std::optional<IndicationDoor>& door) {
    if (door) return door->url();
    return isLoopback(target.host) ? "http://" + listener.name() + "/" : std::string();
}

int show(const ConsoleOptions& options) {
    const ConsoleTarget target = parseConsoleTarget(options.target);
    const EndSignals signals;
    warnOfRisks(options, target);
    const std::optional<TlsTrust> trust = trustOf(options, target);
    HttpUpstream upstream({target.host, target.port, trust ? &*trust : nullptr});
    EventFeed feed;
    Alerts alerts(feed);
    std::optional<IndicationDoor> door;
    if (!options.listenAddress.empty()) door.emplace(options, alerts.httpHandler());

    ListenSocket listener("127.0.0.1", options.port);
    const std::string destination = destinationFor(target, listener, door);
    const bool takesAlerts = !door && !destination.empty();
    ConsoleProxy proxy(upstream, {target.url(), target.path}, feed,
                       takesAlerts ? &alerts.httpHandler() : nullptr);
    EventStream events(feed, {target.url(), destination, false});
    ConsolePages pages(builtConsole(), &events);
    const HttpLimits limits;
    const HostNames names;
    const HttpServices services{
        .handler = proxy, .limits = limits, .pages = &pages, .names = &names};
    HttpServer server(std::move(listener), services);
    server.start();
    std::printf("cimhost shows %s at http://%s/\n", target.url().c_str(),
                server.listener().name().c_str());
    std::fflush(stdout);
    std::optional<std::chrono::seconds> time;
    if (options.maximumSeconds) time = std::chrono::seconds(*options.maximumSeconds);
    signals.wait(time);
    feed.end();
    const bool isEnded = server.stop(consoleGrace);
    if (!isEnded || (door && !door->stop())) std::_Exit(1);
    return 0;
}

void addOptions(CLI::App& command, ConsoleOptions& options) {
    addValue(command, "--target", options.target, "URL",
             "The object manager to show: https://host[:port], or http where TLS is not to be "
             "had")
        ->required();
    addPort(command, "--port", options.port, "TCP port of 127.0.0.1 to show it at");
    auto* const authorities =
        addValue(command, "--ca", options.authorities, "FILE",
                 "Certificates in PEM to trust beside those of the system, the target's own "
                 "where it has signed that itself");
    command
        .add_flag("--insecure", options.isInsecure,
                  "Take whoever answers for the target: check no certificate")
        ->excludes(authorities);
    auto* const listen =
        addValue(command, "--listen", options.listenAddress, "ADDRESS",
                 "Numeric address of this machine that the target reaches, to take its "
                 "indications at; anyone who can reach it can send");
    addPort(command, "--listen-port", options.listenPort, "TCP port for these")->needs(listen);
    addMaximumSeconds(command, options.maximumSeconds);
}

}  // namespace

void addConsoleCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<ConsoleOptions>();
    CLI::App* command =
        application.add_subcommand("console", "Show another object manager to a browser");
    addOptions(*command, *options);
    command->footer(consoleExample);
    command->callback([options, &chosen] { chosen = [options] { return show(*options); }; });
}

}  // namespace cimhost
