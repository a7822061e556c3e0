#include "cimhost/cimxml/ExportHandler.h"
#include "cimhost/http/HttpServer.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/CimXmlAdapter.h"
#include "cimhost/server/Command.h"
#include "cimhost/server/CommandOptions.h"
#include "cimhost/server/EndSignals.h"
#include "cimhost/server/IndicationText.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace cimhost {
namespace {

constexpr std::chrono::seconds listenerGrace{1};
constexpr std::size_t largestMessage = 1024 * 1024;

constexpr const char* listenExample =
    "Example:\n"
    "  cimhost listen --port 5990\n"
    "and give http://localhost:5990/ as the Destination of a CIM_ListenerDestinationCIMXML.\n"
    "\n"
    "Ends in order on SIGTERM and SIGINT, and says how many indications came. Exit status: 0 when\n"
    "it ended in order, 1 when it could not start, 2 for a command line that makes no sense.";

struct ListenOptions {
    std::string address = "127.0.0.1";
    std::uint16_t port = 5990;
    std::vector<std::string> hostNames;
    std::optional<std::uint32_t> maximumSeconds;
    std::optional<std::uint64_t> maximumCount;
};

/// Prints indications, one at a time and each in one piece, and counts them.
class Printer {
public:
    explicit Printer(std::optional<std::uint64_t> limit) : _limit(limit) {}

    void print(const Instance& indication) {
        const std::string text = describeIndication(indication, std::chrono::system_clock::now());
        const std::lock_guard lock(_mutex);
        // One that comes while the program ends was not taken, and will be sent again.
        if (_limit && _count == *_limit) {
            throw CimError(CimCode::failed, "the listener has all that it was to wait for");
        }
        std::fputs(text.c_str(), stdout);
        std::fflush(stdout);
        if (++_count == _limit) kill(getpid(), SIGTERM);
    }

    std::uint64_t count() const {
        const std::lock_guard lock(_mutex);
        return _count;
    }

private:
    const std::optional<std::uint64_t> _limit;
    mutable std::mutex _mutex;
    std::uint64_t _count = 0;
};

int listen(const ListenOptions& options) {
    const EndSignals signals;
    Printer printer(options.maximumCount);
    const ExportHandler handler([&printer](const Instance& each) { printer.print(each); });
    ExportAdapter adapter(handler);
    HttpLimits limits;
    limits.bodyBytes = largestMessage;
    const HostNames names({.others = options.hostNames});
    const HttpServices services{.handler = adapter, .limits = limits, .names = &names};
    HttpServer server(ListenSocket(options.address, options.port), services);
    server.start();
    std::printf("cimhost listens at http://%s/\n", server.listener().name().c_str());
    std::fflush(stdout);
    std::optional<std::chrono::seconds> time;
    if (options.maximumSeconds) time = std::chrono::seconds(*options.maximumSeconds);
    signals.wait(time);
    const bool isEnded = server.stop(listenerGrace);
    std::printf("cimhost received %llu indications\n",
                static_cast<unsigned long long>(printer.count()));
    std::fflush(stdout);
    if (!isEnded) std::_Exit(1);
    return 0;
}

}  // namespace

void addListenCommand(CLI::App& application, Command& chosen) {
    const auto options = std::make_shared<ListenOptions>();
    CLI::App* command = application.add_subcommand("listen", "Receive indications and print them");
    addValue(*command, "--address", options->address, "ADDRESS",
             "Numeric address to listen at; anyone who can reach it can send")
        ->capture_default_str();
    addPort(*command, "--port", options->port, "TCP port");
    addHostNames(*command, options->hostNames);
    addMaximumSeconds(*command, options->maximumSeconds);
    addValue(*command, "--count", options->maximumCount, "NUMBER", "End after so many indications")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 62U));
    command->footer(listenExample);
    command->callback([options, &chosen] { chosen = [options] { return listen(*options); }; });
}

}  // namespace cimhost
