#pragma once

#include "cimhost/repository/Instance.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Instances as the lines of a state file:
///
///     cimhost subscriptions 1
///     CIM_IndicationFilter in interop
///         Name = "fans"
///         SourceNamespaces = {"root/ktq"}
///         IndividualSubscriptionSupported = TRUE
///     end of 1 instances
///
/// Strings are in quotes, with `\"`, `\\` and, for control characters, `\x0a`; datetimes and
/// references are strings, too. Properties that are NULL are left out. Pure functions, safe from
/// several threads.
namespace cimhost {

/// Why a text was refused; what() does not name the line.
class SubscriptionTextError : public std::runtime_error {
public:
    SubscriptionTextError(std::size_t line, const std::string& message)
        : std::runtime_error(message), _line(line) {}

    std::size_t line() const noexcept { return _line; }

private:
    std::size_t _line;
};

struct ReadInstance {
    std::size_t line;   ///< where it begins, counted from 1
    Instance instance;  ///< class and namespace in its path, which has no keys; values untyped
};

std::string formatSubscriptions(const std::vector<Instance>& instances);

/// Throws SubscriptionTextError for whatever formatSubscriptions does not write: another version, a
/// line that makes no sense, a text that ends too soon or goes on too long.
std::vector<ReadInstance> parseSubscriptions(std::string_view text);

}  // namespace cimhost
