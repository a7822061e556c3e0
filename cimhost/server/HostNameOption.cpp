#include "cimhost/server/HostNameOption.h"

#include <CLI/CLI.hpp>

namespace cimhost {
namespace {

std::string judgeName(const std::string& name) {
    constexpr const char* plain =
        "0123456789-._abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const bool isPlain = name.find_first_not_of(plain) == std::string::npos;
    return isPlain && !name.empty() ? "" : "'" + name + "' is no host name";
}

}  // namespace

CLI::Option* addHostNameOption(CLI::App& command, std::vector<std::string>& names) {
    return command
        .add_option(
            "--host-name", names,
            "A name that clients may call this server by, beside localhost, addresses, this "
            "machine's name and those of a certificate that it shows; may be repeated")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->check(judgeName);
}

}  // namespace cimhost
