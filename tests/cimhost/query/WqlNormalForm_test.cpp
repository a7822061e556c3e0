#include "cimhost/query/WqlNormalForm.h"

#include "cimhost/query/WqlEvaluation.h"
#include "cimhost/query/WqlParser.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace cimhost {
namespace {

std::optional<WqlCondition> conditionOf(const std::string& text) {
    return parseQuery("WQL", "SELECT * FROM X WHERE " + text).condition;
}

/// "a=1&b=2 | c<>3": the terms, with what joins them left out.
std::string textOf(const std::optional<std::vector<WqlTerm>>& terms) {
    if (!terms) return "none";
    std::string text;
    for (const WqlTerm& term : *terms) {
        if (!text.empty()) text += " | ";
        std::string separator;
        for (const WqlPredicate& predicate : term) {
            text += separator + std::get<WqlProperty>(predicate.left).text() +
                    std::string(operatorText(predicate.operation));
            separator = "&";
        }
    }
    return text;
}

TEST(WqlNormalForm, DistributesOneOverTheOther) {
    const auto condition = conditionOf("a=1 AND (b=2 OR c=3) AND d=4");
    EXPECT_EQ(textOf(normalForm(condition, NormalForm::disjunctive)), "a=&b=&d= | a=&c=&d=");
    EXPECT_EQ(textOf(normalForm(condition, NormalForm::conjunctive)), "a= | b=&c= | d=");
}

TEST(WqlNormalForm, MovesNotIntoTheComparisons) {
    const auto condition = conditionOf("NOT (a<1 AND NOT (b IS NULL OR c LIKE 'x'))");
    EXPECT_EQ(textOf(normalForm(condition, NormalForm::disjunctive)), "a>= | bIS NULL | cLIKE");
    EXPECT_EQ(textOf(normalForm(conditionOf("NOT (a ISA B OR b<>2)"), NormalForm::conjunctive)),
              "aNOT ISA | b=");
}

TEST(WqlNormalForm, OfNoConditionAlwaysHolds) {
    EXPECT_EQ(normalForm(std::nullopt, NormalForm::disjunctive)->size(), 1U);
    EXPECT_TRUE(normalForm(std::nullopt, NormalForm::disjunctive)->front().empty());
    EXPECT_TRUE(normalForm(std::nullopt, NormalForm::conjunctive)->empty());
}

TEST(WqlNormalForm, IsNotMadeWhenItWouldBeTooLong) {
    std::string text = "(a=1 OR b=2)";
    for (int i = 0; i < 100; ++i) text += " AND (a=1 OR b=2)";
    EXPECT_EQ(textOf(normalForm(conditionOf(text), NormalForm::disjunctive)), "none");
    EXPECT_EQ(normalForm(conditionOf(text), NormalForm::conjunctive)->size(), 101U);
}

TEST(WqlNormalForm, MeansTheSameAsTheCondition) {
    const auto condition =
        conditionOf("NOT (a=1 OR b=1 AND NOT c=1) AND (c=1 OR NOT (a=1 AND b=1))");
    const auto doc = *normalForm(condition, NormalForm::disjunctive);
    const auto cod = *normalForm(condition, NormalForm::conjunctive);
    for (unsigned bits = 0; bits < 8; ++bits) {
        Instance instance;
        for (unsigned i = 0; i < 3; ++i) {
            instance.set(std::string(1, static_cast<char>('a' + i)),
                         Value::unsignedInteger(CimType::uint8, bits >> i & 1U));
        }
        InstanceValues values(instance);
        const auto holds = [&](const WqlPredicate& predicate) {
            return evaluate(predicate, values, nullptr) == Truth::yes;
        };
        const bool expected = evaluate(*condition, values, nullptr) == Truth::yes;
        EXPECT_EQ(expected, std::any_of(doc.begin(), doc.end(),
                                        [&](const WqlTerm& term) {
                                            return std::all_of(term.begin(), term.end(), holds);
                                        }))
            << bits;
        EXPECT_EQ(expected, std::all_of(cod.begin(), cod.end(),
                                        [&](const WqlTerm& term) {
                                            return std::any_of(term.begin(), term.end(), holds);
                                        }))
            << bits;
    }
}

}  // namespace
}  // namespace cimhost
