#include "cimhost/query/WqlEvaluation.h"

#include "cimhost/query/WqlPattern.h"
#include "cimhost/repository/DateTime.h"
#include "cimhost/repository/Literals.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <compare>
#include <memory>
#include <optional>
#include <utility>

namespace cimhost {

namespace {

Truth truthOf(bool value) noexcept { return value ? Truth::yes : Truth::no; }

Truth opposite(Truth truth) noexcept {
    return static_cast<Truth>(-static_cast<signed char>(truth));
}

const Value* descend(const Value* value, const std::vector<std::string>& parts) noexcept {
    for (std::size_t i = 1; value && i < parts.size(); ++i) {
        const auto* const embedded = value->get<std::shared_ptr<const Instance>>();
        if (!embedded || !*embedded) return nullptr;
        const PropertyValue* const property = (*embedded)->find(parts[i]);
        value = property ? &property->value : nullptr;
    }
    return value && !value->isNull() ? value : nullptr;
}

// Null for NULL.
const Value* valueOf(const WqlOperand& operand, WqlValues& values) {
    const auto* const property = std::get_if<WqlProperty>(&operand);
    if (!property) return &std::get<Value>(operand);
    return descend(values.find(property->parts.front()), property->parts);
}

using Order = std::partial_ordering;

// Exact where a double could not tell neighbours apart.
Order compareIntegers(const Value& left, const Value& right) noexcept {
    const auto compare = [](auto first, auto second) {
        if (std::cmp_less(first, second)) return Order::less;
        return std::cmp_less(second, first) ? Order::greater : Order::equivalent;
    };
    const auto compareWithRight = [&](auto first) {
        if (const auto* const natural = right.get<std::uint64_t>()) return compare(first, *natural);
        if (const auto* const integer = right.get<std::int64_t>()) return compare(first, *integer);
        return Order::unordered;
    };
    if (const auto* const natural = left.get<std::uint64_t>()) return compareWithRight(*natural);
    if (const auto* const integer = left.get<std::int64_t>()) return compareWithRight(*integer);
    return Order::unordered;
}

long double realOf(const Value& value) noexcept {
    if (const auto* const natural = value.get<std::uint64_t>()) {
        return static_cast<long double>(*natural);
    }
    if (const auto* const integer = value.get<std::int64_t>()) {
        return static_cast<long double>(*integer);
    }
    // A constant has more digits than a real32 can keep.
    return *value.get<double>();
}

Order compareReals(const Value& left, const Value& right) noexcept {
    if (left.type() == CimType::real32 || right.type() == CimType::real32) {
        return static_cast<float>(realOf(left)) <=> static_cast<float>(realOf(right));
    }
    return realOf(left) <=> realOf(right);
}

Order compareNumbers(const Value& left, const Value& right) noexcept {
    const bool hasReal = left.get<double>() || right.get<double>();
    return hasReal ? compareReals(left, right) : compareIntegers(left, right);
}

Order compareTimes(std::string_view left, std::string_view right) {
    if (left == right) return Order::equivalent;
    const bool areTimes = isDateTime(left) && isDateTime(right);
    if (!areTimes || isInterval(left) != isInterval(right)) return Order::unordered;
    const auto leftTime = microsecondsOf(left);
    const auto rightTime = microsecondsOf(right);
    if (!leftTime || !rightTime) return Order::unordered;
    return *leftTime <=> *rightTime;
}

Order compareTexts(const Value& left, const Value& right) {
    const std::string_view leftText = *left.get<Text>();
    const std::string_view rightText = *right.get<Text>();
    if (left.type() == CimType::dateTime || right.type() == CimType::dateTime) {
        return compareTimes(leftText, rightText);
    }
    return leftText.compare(rightText) <=> 0;
}

// A character as the string that queries write for it.
std::optional<Value> characterString(const Value& value) {
    if (value.type() != CimType::char16) return std::nullopt;
    std::optional<std::string> text = characterText(*value.get<std::uint64_t>());
    return text ? std::optional(Value::string(*text)) : std::nullopt;
}

bool isNumber(const Value& value) noexcept {
    return value.type() != CimType::char16 && (isInteger(value.type()) || isReal(value.type()));
}

Order compare(const Value& left, const Value& right) {
    if (left.isArray() || right.isArray()) return Order::unordered;
    if (isNumber(left) && isNumber(right)) return compareNumbers(left, right);
    if (const auto text = characterString(left)) return compare(*text, right);
    if (const auto text = characterString(right)) return compare(left, *text);
    if (left.get<Text>() && right.get<Text>()) return compareTexts(left, right);
    return Order::unordered;
}

Truth compareBooleans(WqlOperator operation, bool left, bool right) noexcept {
    if (operation == WqlOperator::equal) return truthOf(left == right);
    if (operation == WqlOperator::notEqual) return truthOf(left != right);
    return Truth::unknown;
}

Truth judge(WqlOperator operation, Order order) noexcept {
    if (order == Order::unordered) return Truth::unknown;
    switch (operation) {
        case WqlOperator::equal: return truthOf(std::is_eq(order));
        case WqlOperator::notEqual: return truthOf(std::is_neq(order));
        case WqlOperator::less: return truthOf(std::is_lt(order));
        case WqlOperator::lessOrEqual: return truthOf(std::is_lteq(order));
        case WqlOperator::greater: return truthOf(std::is_gt(order));
        case WqlOperator::greaterOrEqual: return truthOf(std::is_gteq(order));
        case WqlOperator::like:
        case WqlOperator::notLike:
        case WqlOperator::isA:
        case WqlOperator::notIsA:
        case WqlOperator::isNull:
        case WqlOperator::isNotNull: break;
    }
    return Truth::unknown;
}

Truth isOfClass(const Value& value, const Value& wanted, const NameSpace* nameSpace) {
    std::optional<std::string_view> name;
    if (const auto* const embedded = value.get<std::shared_ptr<const Instance>>()) {
        name = (*embedded)->className();
    } else if (const auto* const path = value.get<std::shared_ptr<const ObjectPath>>()) {
        name = (*path)->className;
    } else if (const auto* const text = value.get<Text>()) {
        name = *text;  // __CLASS, or the name of a class
    }
    const Text* const ancestor = wanted.get<Text>();
    if (!name || !ancestor) return Truth::unknown;
    return truthOf(equalNames(*name, *ancestor) || (nameSpace && nameSpace->isA(*name, *ancestor)));
}

Truth isLikeValue(const Value& value, const Value& pattern) {
    const Text* const text = value.get<Text>();
    const Text* const wanted = pattern.get<Text>();
    return text && wanted ? truthOf(isLike(*text, *wanted)) : Truth::unknown;
}

Truth evaluatePresent(WqlOperator operation, const Value& left, const Value& right,
                      const NameSpace* nameSpace) {
    if (operation == WqlOperator::like) return isLikeValue(left, right);
    if (operation == WqlOperator::notLike) return opposite(isLikeValue(left, right));
    if (operation == WqlOperator::isA) return isOfClass(left, right, nameSpace);
    if (operation == WqlOperator::notIsA) return opposite(isOfClass(left, right, nameSpace));
    const auto* const leftFlag = left.get<bool>();
    const auto* const rightFlag = right.get<bool>();
    if (leftFlag && rightFlag) return compareBooleans(operation, *leftFlag, *rightFlag);
    return judge(operation, compare(left, right));
}

}  // namespace

const Value* InstanceValues::find(const std::string& property) {
    if (equalNames(property, "__CLASS")) return &_className;
    const PropertyValue* const found = _instance.find(property);
    return found && !found->value.isNull() ? &found->value : nullptr;
}

Truth evaluate(const WqlPredicate& predicate, WqlValues& values, const NameSpace* nameSpace) {
    const Value* const left = valueOf(predicate.left, values);
    if (predicate.operation == WqlOperator::isNull) return truthOf(!left);
    if (predicate.operation == WqlOperator::isNotNull) return truthOf(left);
    const Value* const right = valueOf(predicate.right, values);
    if (!left || !right) return Truth::unknown;
    return evaluatePresent(predicate.operation, *left, *right, nameSpace);
}

Truth evaluate(const WqlCondition& condition, WqlValues& values, const NameSpace* nameSpace) {
    if (condition.kind == WqlCondition::Kind::predicate) {
        return evaluate(condition.predicate, values, nameSpace);
    }
    if (condition.kind == WqlCondition::Kind::negation) {
        return opposite(evaluate(condition.parts.front(), values, nameSpace));
    }
    // The least of all parts, or the greatest of any.
    const bool isAll = condition.kind == WqlCondition::Kind::all;
    const Truth decided = isAll ? Truth::no : Truth::yes;
    Truth result = opposite(decided);
    for (const WqlCondition& part : condition.parts) {
        const Truth each = evaluate(part, values, nameSpace);
        if (each == decided) return decided;
        result = isAll ? std::min(result, each) : std::max(result, each);
    }
    return result;
}

bool meetsCondition(const WqlQuery& query, WqlValues& values, const NameSpace* nameSpace) {
    return !query.condition || evaluate(*query.condition, values, nameSpace) == Truth::yes;
}

bool selects(const WqlQuery& query, const Instance& instance, const NameSpace* nameSpace) {
    const bool isOfItsClass = equalNames(instance.className(), query.className) ||
                              (nameSpace && nameSpace->isA(instance.className(), query.className));
    if (!isOfItsClass) return false;
    InstanceValues values(instance);
    return meetsCondition(query, values, nameSpace);
}

}  // namespace cimhost
