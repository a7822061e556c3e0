#pragma once

#include "cimhost/query/WqlQuery.h"

#include <cstddef>
#include <optional>
#include <vector>

/// Conditions without NOT, in two levels. Pure functions, safe from several threads.
namespace cimhost {

enum class NormalForm {
    disjunctive,  ///< an OR of ANDs
    conjunctive,  ///< an AND of ORs
};

using WqlTerm = std::vector<WqlPredicate>;

/// Normal forms may be exponentially longer than what they are made of: there are none of more
/// predicates than this.
constexpr std::size_t longestNormalForm = 4096;

/// The terms of the condition in this form. A condition that is not there always holds: one empty
/// AND, or no OR at all. Nothing when the form would be too long.
std::optional<std::vector<WqlTerm>> normalForm(const std::optional<WqlCondition>& condition,
                                               NormalForm form);

}  // namespace cimhost
