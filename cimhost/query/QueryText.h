#pragma once

#include <string>
#include <string_view>

namespace cimhost {

/// The class behind FROM in a query, which is not checked any further. Languages are WQL, CQL and
/// DMTF:CQL in any case. Throws CimError queryLanguageNotSupported, invalidQuery.
std::string queriedClass(std::string_view language, std::string_view query);

}  // namespace cimhost
