#include "common/detail/EnclosureForwarding.h"

#include "platform/ipmi/Bmc.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <string_view>

namespace PYL {

namespace {

constexpr std::uint16_t tarsusProductId = 4098;
constexpr const char* fibreChannelProvider = "KT FCHBA";

/// The leading digits of an event identifier.
int eventNumber(const std::string& eventID) noexcept {
    const int saved = errno;
    const long number = std::strtol(eventID.c_str(), nullptr, 10);
    errno = saved;
    return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

/// Everything worse than information goes to the enclosure; of the rest, what tells that a provider
/// lives.
bool isForwarded(int severity, const std::string& provider, int event) noexcept {
    constexpr int information = 2;
    return severity > information || (provider == "KT WBEM" && (event == 1 || event == 4)) ||
           (provider == fibreChannelProvider && event == 1) ||
           (provider == "KT Test" && event == 1);
}

bool isTarsus(const BmcDeviceId& identity) noexcept {
    return identity.manufacturerId == bmcManufacturerId && identity.productId == tarsusProductId;
}

struct Released {
    void operator()(char* memory) const noexcept { std::free(memory); }
};
using Buffer = std::unique_ptr<char, Released>;

/// The way to the controller, closed at the end.
struct OpenBmc {
    BmcHandle handle;
    bool isOpen = false;
    ~OpenBmc() {
        if (isOpen) BMC_close(handle);
    }
};

const char* completionText(std::uint8_t code) noexcept {
    switch (code) {
        case 1: return "Provided command input data is not complete.";
        case 2:
        case 6:  // the module tells the two apart; for the operator they are one
            return "Internal error - internal error detected - memory could not be allocated, etc.";
        case 3:
            return "Error in index - given handle number does not match any currently outstanding "
                   "requests.";
        case 4:
            return "Cli entries full - maximum number of outstanding ipmi cli entries has been "
                   "reached.";
        case 5:
            return "Invalid command - provided command is not supported via the ipmi cli "
                   "interface.";
        case 7:
            return "Response does not fit into cli response message - output data > excess data "
                   "lost.";
        case 8: return "Length exceeded - argument or environment variable length exceeded limit.";
        default: return "Unknown response error.";
    }
}

void logInterfaceStatus(const Logger& log, int status) {
    switch (status) {
        case encaCommandTimeout: return log.info("Command time out.");
        case encaOutputTooLarge: return log.info("The size of stdout or stderr is not enough.");
        case encaPointerIsNull: return log.info("The pointer to the stdout or stderr is NULL.");
        default: return log.info("Unknown interface error(%x).", static_cast<unsigned>(status));
    }
}

std::string providerOption(std::string provider) {
    if (provider == fibreChannelProvider) return "KT_Fibre_Channel";
    const auto isBlank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    std::replace_if(provider.begin(), provider.end(), isBlank, '_');
    return provider;
}

std::string joined(const std::vector<std::string>& texts, const char* between) {
    std::string all;
    for (const auto& text : texts) {
        if (&text != &texts.front()) all += between;
        all += text;
    }
    return all;
}

std::string operatingSystemOption() {
    utsname system{};
    return uname(&system) == 0 ? std::string(" --OSVER ") + system.release : std::string();
}

std::string hostNameOption(const Logger& log) {
    // gethostname need not terminate a name that it cuts: the last byte is ours.
    constexpr std::size_t nameSize = 255;
    std::array<char, nameSize + 1> name{};
    if (gethostname(name.data(), nameSize) == 0) return std::string(" --SNAM ") + name.data();
    const int error = errno;
    log.info("gethostname Error=%s ", std::string(std::strerror(error)));
    return {};
}

/// The options of the command. The module takes them in any order; its log shows them in this one.
std::string argumentLine(const EnclosureEvent& event, const BmcHandle& bmc, const Logger& log) {
    const bool isCommunication =
        event.providerName == fibreChannelProvider || event.providerName == "KT Ethernet";
    std::string line = "--PNAM " + providerOption(event.providerName);
    if (!event.partNumber.empty() && !event.partNumber.starts_with("NULL")) {
        line += " --HPART " + event.partNumber;
    }
    line += " --EID " + event.eventID;
    line += " --PVER 03.02.00 --OSTYP 39";
    line += operatingSystemOption();
    line += isCommunication ? " --EVTTYP 1" : " --EVTTYP 2";
    line += " --IMD 5";
    if (bmc.hasSystemGuid) line += " --SGUID " + bmc.systemGuid;
    if (!event.physicalLocation.empty()) {
        auto location = event.physicalLocation;
        std::erase(location, '-');
        line += " --HPHYL " + location;
    }
    line += " --SFWVER " + event.systemFirmwareVersion;
    if (!event.addresses.empty()) line += " --NWADD " + joined(event.addresses, "__");
    return line + hostNameOption(log);
}

void runCommand(const EnclosureEvent& event, BmcHandle& bmc, const Logger& log) {
    constexpr std::size_t outputSize = 200'000;
    constexpr std::size_t errorSize = 15'000;
    const Buffer output(static_cast<char*>(std::malloc(outputSize)));
    if (!output) return log.info("Unable to malloc enough memory for stdout.");
    const Buffer errors(static_cast<char*>(std::malloc(errorSize)));
    if (!errors) return log.info("Unable to malloc enough memory for stderr.");

    const auto line = argumentLine(event, bmc, log);
    std::array<char, encaArgumentSize> argument{};
    line.copy(argument.data(), argument.size() - 1);
    EncaRequest request;
    const std::string_view command = "MPEventGen";
    command.copy(request.command.data(), request.command.size() - 1);
    request.argument = argument.data();
    EncaOutput standardOutput{output.get(), outputSize};
    EncaOutput standardError{errors.get(), errorSize};
    std::uint8_t completionCode = 0;

    log.info("calling ENCA_CLI_Exec with arg %s", line);
    const int status = ENCA_CLI_Exec(bmc, request, standardOutput, standardError, completionCode);
    if (status != 0) return logInterfaceStatus(log, status);
    if (completionCode != 0) log.info("%s", completionText(completionCode));
}

void forward(const EnclosureEvent& event, const Logger& log) {
    OpenBmc bmc;
    const int status = BMC_open(bmc.handle, 0, 1);
    if (status != 0) return log.info("BMC_open() failed: %s", BMC_strerror(status));
    bmc.isOpen = true;
    if (!isTarsus(bmc.handle.deviceId)) {
        return log.info("not forwarded to ENCA since not a Tarsus server");
    }
    runCommand(event, bmc.handle, log);
}

}  // namespace

void forwardToEnclosure(const EnclosureEvent& event, const Logger& log) {
    const int number = eventNumber(event.eventID);
    if (!isForwarded(event.severity, event.providerName, number)) {
        return log.info(
            "Not forwarded to ENCA since unsupported eventID %d Providername %s to forward to ENCA",
            number, event.providerName);
    }
    try {
        forward(event, log);
    } catch (const std::exception& failure) {
        log.info("not forwarded to ENCA: %s", failure.what());
    }
}

}  // namespace PYL
