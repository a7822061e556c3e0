#pragma once

#include "cimhost/query/WqlQuery.h"

#include <cstddef>
#include <string>
#include <string_view>

/// Queries of WQL, and the part of CQL that is written alike:
///
///     SELECT * | property, ... FROM class [WHERE condition]
///
/// A condition is made of comparisons (= <> != < <= > >=), LIKE, ISA, IS NULL, IS NOT NULL, AND,
/// OR, NOT and parentheses. Keywords have no case. Pure functions, safe from several threads.
namespace cimhost {

/// What a query may hold at most.
struct WqlLimits {
    static constexpr std::size_t textBytes = 16 * 1024;
    static constexpr std::size_t depth = 64;  ///< parentheses and NOTs one in the other
    static constexpr std::size_t predicates = 256;
    static constexpr std::size_t properties = 256;  ///< selected
    static constexpr std::size_t nameParts = 16;
};

/// Languages are WQL, CQL and DMTF:CQL, in any case; others are CimError queryLanguageNotSupported.
/// Throws invalidQuery that says where something else is
/// expected, or which limit the query exceeds; queryFeatureNotSupported for LIKE in CQL, whose
/// patterns are of another kind.
WqlQuery parseQuery(std::string_view language, std::string_view text);

/// The class behind FROM; what is selected, and what follows, may be anything. Throws CimError
/// queryLanguageNotSupported, invalidQuery.
std::string queriedClass(std::string_view language, std::string_view text);

}  // namespace cimhost
