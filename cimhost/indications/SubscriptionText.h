#pragma once

#include "cimhost/mof/MofReader.h"
#include "cimhost/repository/Instance.h"

#include <string>
#include <string_view>
#include <vector>

/// The state file of the subscriptions: instances in MOF, between lines that tell it from any other
/// and a whole one from a part:
///
///     // cimhost subscriptions 2
///     #pragma namespace ("interop")
///     instance of CIM_IndicationFilter {
///         Name = "fans";
///     };
///     // end of 1 instances
namespace cimhost {

/// Throws CimError failed for what MOF has no literal for.
std::string formatSubscriptions(const std::vector<Instance>& instances);

/// True for a text in form 1, which is read still but not written: `Class in namespace`, and a line
/// `    Name = value` for each property, where strings have `\"`, `\\` and `\x0a`.
bool isOldForm(std::string_view text) noexcept;

/// As readInstances, for a text of either form. MofError as well for a text of another form, and
/// for one that ends too soon or goes on too long.
std::vector<DeclaredInstance> parseSubscriptions(const Repository& repository,
                                                 std::string_view text, const std::string& file);

}  // namespace cimhost
