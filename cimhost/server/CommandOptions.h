#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Options that several commands have, and those of a kind.
namespace cimhost {

/// A text, a file or the like, which the help calls by `unit`.
template <typename Value>
CLI::Option* addValue(CLI::App& command, const std::string& name, Value& value,
                      const std::string& unit, const std::string& description) {
    return command.add_option(name, value, description)->type_name(unit);
}

/// The same for several, each of which the option is repeated for.
template <typename Value>
CLI::Option* addList(CLI::App& command, const std::string& name, std::vector<Value>& values,
                     const std::string& unit, const std::string& description) {
    return addValue(command, name, values, unit, description)->allow_extra_args(false);
}

/// A whole number of this range. The help tells its value of now as the default.
template <typename Number, typename Bound>
CLI::Option* addNumber(CLI::App& command, const std::string& name, Number& number, Bound least,
                       Bound most, const std::string& description,
                       const std::string& unit = "NUMBER") {
    return addValue(command, name, number, unit, description)
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
