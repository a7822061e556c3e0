#include "cimhost/server/CommandOptions.h"

namespace cimhost {
namespace {

std::string judgeName(const std::string& name) {
    constexpr const char* plain =
        "0123456789-._abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const bool isPlain = name.find_first_not_of(plain) == std::string::npos;
    return isPlain && !name.empty() ? "" : "'" + name + "' is no host name";
}

}  // namespace

CLI::Option* addPort(CLI::App& command, const std::string& name, std::uint16_t& port,
                     const std::string& description) {
    return addNumber(command, name, port, 0, 65535, description + "; 0 takes any free one");
}

void addMaximumSeconds(CLI::App& command, std::optional<std::uint32_t>& seconds) {
    addValue(command, "--max-seconds", seconds, "SECONDS", "End by itself after this time");
}

void addHostNames(CLI::App& command, std::vector<std::string>& names) {
    addList(command, "--host-name", names, "NAME",
            "A name that clients may call this server by, beside localhost, addresses, this "
            "machine's name and those of a certificate that it shows; may be repeated")
        ->check(judgeName);
}

}  // namespace cimhost
