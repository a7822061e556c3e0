#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Options that several commands have, and those of a kind.
namespace cimhost {

/// A whole number of this range. The help tells its value of now as the default.
template <typename Number, typename Bound>
CLI::Option* addNumber(CLI::App& command, const std::string& name, Number& number, Bound least,
                       Bound most, const std::string& description,
                       const std::string& unit = "NUMBER") {
    return command.add_option(name, number, description)
        ->type_name(unit)
        ->check(CLI::Range(least, most))
        ->capture_default_str();
}

/// A TCP port.
CLI::Option* addPort(CLI::App& command, const std::string& name, std::uint16_t& port,
                     const std::string& description);

/// Adds --max-seconds.
void addMaximumSeconds(CLI::App& command, std::optional<std::uint32_t>& seconds);

/// Adds --host-name to a command that serves; see HostNames for what the names are for.
void addHostNames(CLI::App& command, std::vector<std::string>& names);

}  // namespace cimhost
