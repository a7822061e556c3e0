#pragma once

#include "cimhost/repository/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace cimhost {

/// A property of the instance that a query looks at: `Speed`, or `SourceInstance.Speed` for one of
/// an embedded instance.
struct WqlProperty {
    std::vector<std::string> parts;  ///< at least one

    /// The parts joined by dots.
    std::string text() const;
};

/// A constant: a string, a boolean, uint64, sint64 (negative ones only) or real64.
using WqlOperand = std::variant<WqlProperty, Value>;

enum class WqlOperator : std::uint8_t {
    equal,
    notEqual,
    less,
    lessOrEqual,
    greater,
    greaterOrEqual,
    like,
    notLike,
    isA,
    notIsA,
    isNull,
    isNotNull,
};

/// The operator that holds exactly when the other does not, NULLs aside.
WqlOperator negated(WqlOperator operation) noexcept;

/// As queries write it: "<=", "IS NOT NULL".
std::string_view operatorText(WqlOperator operation) noexcept;

/// One comparison. The right side of LIKE and ISA is a string; that of IS NULL is not looked at.
struct WqlPredicate {
    WqlOperand left;
    WqlOperator operation = WqlOperator::equal;
    WqlOperand right;
};

struct WqlCondition {
    enum class Kind : std::uint8_t { all, any, negation, predicate };

    Kind kind = Kind::predicate;
    std::vector<WqlCondition> parts;  ///< of `all` and `any`; one of `negation`
    WqlPredicate predicate;
};

/// `SELECT ... FROM class [WHERE ...]`, as it was read. Constant; safe from several threads.
struct WqlQuery {
    std::string text;
    std::string language;
    std::string className;
    std::optional<std::vector<WqlProperty>> selection;  ///< none for `*`
    std::optional<WqlCondition> condition;
};

}  // namespace cimhost
