#include "cimhost/query/WqlQuery.h"

#include <array>

namespace cimhost {

namespace {

struct OperatorRow {
    WqlOperator operation;
    WqlOperator opposite;
    std::string_view text;
};

constexpr auto operatorRows = std::to_array<OperatorRow>({
    {WqlOperator::equal, WqlOperator::notEqual, "="},
    {WqlOperator::notEqual, WqlOperator::equal, "<>"},
    {WqlOperator::less, WqlOperator::greaterOrEqual, "<"},
    {WqlOperator::lessOrEqual, WqlOperator::greater, "<="},
    {WqlOperator::greater, WqlOperator::lessOrEqual, ">"},
    {WqlOperator::greaterOrEqual, WqlOperator::less, ">="},
    {WqlOperator::like, WqlOperator::notLike, "LIKE"},
    {WqlOperator::notLike, WqlOperator::like, "NOT LIKE"},
    {WqlOperator::isA, WqlOperator::notIsA, "ISA"},
    {WqlOperator::notIsA, WqlOperator::isA, "NOT ISA"},
    {WqlOperator::isNull, WqlOperator::isNotNull, "IS NULL"},
    {WqlOperator::isNotNull, WqlOperator::isNull, "IS NOT NULL"},
});

// The row of an operator is found by its place.
static_assert([] {
    for (std::size_t i = 0; i < operatorRows.size(); ++i) {
        if (static_cast<std::size_t>(operatorRows[i].operation) != i) return false;
    }
    return true;
}());

}  // namespace

std::string WqlProperty::text() const {
    std::string result = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i) result += "." + parts[i];
    return result;
}

WqlOperator negated(WqlOperator operation) noexcept {
    return operatorRows[static_cast<std::size_t>(operation)].opposite;
}

std::string_view operatorText(WqlOperator operation) noexcept {
    return operatorRows[static_cast<std::size_t>(operation)].text;
}

}  // namespace cimhost
