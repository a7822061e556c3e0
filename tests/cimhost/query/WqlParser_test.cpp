#include "cimhost/query/WqlParser.h"

#include "cimhost/repository/CimError.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

template <typename Read = decltype(&parseQuery)>
std::string failureOf(std::string_view text, std::string_view language = "WQL",
                      Read read = parseQuery) {
    return errorOf([&] { read(language, text); });
}

TEST(WqlParser, ReadsSelectionClassAndCondition) {
    const WqlQuery query =
        parseQuery("WQL", "select Name, CIM_Fan.Speed FROM CIM_Fan where Speed > 3");
    EXPECT_EQ(query.className, "CIM_Fan");
    ASSERT_TRUE(query.selection);
    ASSERT_EQ(query.selection->size(), 2U);
    EXPECT_EQ((*query.selection)[1].text(), "Speed");
    ASSERT_TRUE(query.condition);
    EXPECT_EQ(query.condition->predicate.operation, WqlOperator::greater);
}

TEST(WqlParser, BindsAndTighterThanOrAndNotTightest) {
    const WqlQuery query = parseQuery(
        "WQL", "SELECT * FROM X WHERE NOT a = 1 AND b = 2 OR (c = 3 OR d = 4) AND e = 5");
    EXPECT_FALSE(query.selection);
    const WqlCondition& any = *query.condition;
    ASSERT_EQ(any.kind, WqlCondition::Kind::any);
    ASSERT_EQ(any.parts.size(), 2U);
    EXPECT_EQ(any.parts[0].kind, WqlCondition::Kind::all);
    EXPECT_EQ(any.parts[0].parts[0].kind, WqlCondition::Kind::negation);
    EXPECT_EQ(any.parts[1].parts[0].kind, WqlCondition::Kind::any);
}

TEST(WqlParser, TurnsComparisonsWithTheConstantOnTheLeft) {
    const WqlQuery query = parseQuery("WQL", "SELECT * FROM X WHERE 3 <= Speed");
    const WqlPredicate& predicate = query.condition->predicate;
    EXPECT_EQ(std::get<WqlProperty>(predicate.left).text(), "Speed");
    EXPECT_EQ(predicate.operation, WqlOperator::greaterOrEqual);
}

TEST(WqlParser, ReadsEveryKindOfConstant) {
    const WqlQuery query = parseQuery(
        "WQL",
        "SELECT * FROM X WHERE a=18446744073709551615 AND b=-9223372036854775808 AND c=-1.5e3 AND "
        "d=true AND e='it''s \\'\\\\ \"' AND f=\"C:\\dir\" AND g=+7");
    const auto constant = [&](std::size_t i) {
        return std::get<Value>(query.condition->parts[i].predicate.right);
    };
    EXPECT_EQ(*constant(0).get<std::uint64_t>(), UINT64_MAX);
    EXPECT_EQ(*constant(1).get<std::int64_t>(), INT64_MIN);
    EXPECT_EQ(*constant(2).get<double>(), -1500.0);
    EXPECT_TRUE(*constant(3).get<bool>());
    EXPECT_EQ(*constant(4).get<Text>(), "it's '\\ \"");
    EXPECT_EQ(*constant(5).get<Text>(), "C:\\dir");
    EXPECT_EQ(*constant(6).get<std::uint64_t>(), 7U);
}

TEST(WqlParser, SaysWhereSomethingElseIsExpected) {
    EXPECT_EQ(failureOf("SELECT * FRM X"),
              "15: the query has 'FRM' at character 10 where FROM is expected");
    EXPECT_EQ(failureOf("SELECT * FROM X WHERE a = "),
              "15: the query has the end of the query at character 27 where a property or a "
              "constant is expected");
    EXPECT_EQ(failureOf("SELECT * FROM X WHERE (a = 1"),
              "15: the query has the end of the query at character 29 where AND, OR or ')' is "
              "expected");
    EXPECT_EQ(
        failureOf("SELECT * FROM X WHERE a = 'open"),
        "15: the query has ''open' at character 27 where a string that is closed is expected");
}

TEST(WqlParser, RefusesWhatIsNoQuery) {
    for (const char* const text : {"",
                                   "SELECT",
                                   "SELECT *",
                                   "SELECT * FROM",
                                   "SELECT FROM X",
                                   "SELECT a, FROM X",
                                   "SELECT * FROM 7",
                                   "SELECT * FROM X extra",
                                   "SELECT * FROM X WHERE",
                                   "SELECT * FROM X WHERE a",
                                   "SELECT * FROM X WHERE 1 = 2",
                                   "SELECT * FROM X WHERE a = = 1",
                                   "SELECT * FROM X WHERE a IS 3",
                                   "SELECT * FROM X WHERE a NOT 3",
                                   "SELECT * FROM X WHERE a LIKE 3",
                                   "SELECT * FROM X WHERE a ISA 3",
                                   "SELECT * FROM X WHERE 'a' IS NULL",
                                   "SELECT * FROM X WHERE a = 1 AND",
                                   "SELECT * FROM X WHERE a = 1)",
                                   "SELECT * FROM X WHERE a = 1x",
                                   "SELECT * FROM X WHERE a = 99999999999999999999999999999e999",
                                   "SELECT * FROM X WHERE a. = 1",
                                   "SELECT * FROM X WHERE \xFF = 1",
                                   "DELETE FROM X"}) {
        EXPECT_EQ(failureOf(text).substr(0, 3), "15:") << text;
    }
}

TEST(WqlParser, KnowsItsLanguages) {
    for (const char* const language : {"WQL", "wql", "CQL", "DMTF:CQL"}) {
        EXPECT_EQ(failureOf("SELECT * FROM X WHERE a = 1", language), "");
    }
    EXPECT_EQ(failureOf("SELECT * FROM X", "SQL"), "14: query language 'SQL' is not supported");
    EXPECT_EQ(failureOf("SELECT * FROM X WHERE a LIKE 'b'", "DMTF:CQL").substr(0, 3), "29:");
}

std::string nested(std::size_t depth) {
    return "SELECT * FROM X WHERE " + std::string(depth, '(') + "a=1" + std::string(depth, ')');
}

TEST(WqlParser, HoldsToItsLimits) {
    EXPECT_EQ(failureOf(nested(WqlLimits::depth - 1)), "");
    EXPECT_EQ(failureOf(nested(WqlLimits::depth)),
              "15: the query has more than 64 levels of parentheses");
    EXPECT_EQ(failureOf(nested(8000)), "15: the query has more than 64 levels of parentheses");
    std::string many = "SELECT * FROM X WHERE a=1";
    for (std::size_t i = 1; i < WqlLimits::predicates; ++i) many += " OR a=1";
    EXPECT_EQ(failureOf(many), "");
    EXPECT_EQ(failureOf(many + " OR a=1"), "15: the query has more than 256 comparisons");
    EXPECT_EQ(failureOf("SELECT * FROM X" + std::string(WqlLimits::textBytes, ' ')),
              "15: the query has more than 16384 bytes");
}

TEST(WqlParser, FindsTheClassBehindFromWhateverIsSelected) {
    EXPECT_EQ(queriedClass("WQL", "SELECT * FROM CIM_Fan"), "CIM_Fan");
    EXPECT_EQ(queriedClass("DMTF:CQL", "select Name,Speed from CIM_Fan where Speed > 3"),
              "CIM_Fan");
    EXPECT_EQ(queriedClass("cql", "SELECT\n*\nFROM\tCIM_Fan;"), "CIM_Fan");
    EXPECT_EQ(queriedClass("CQL", "SELECT OBJECTPATH(f) AS p, COUNT(*) FROM CIM_Fan AS f, CIM_X"),
              "CIM_Fan");
}

TEST(WqlParser, PassesOverFromInStrings) {
    EXPECT_EQ(queriedClass("WQL", "SELECT \"a FROM b\", 'it\\'s FROM c' FROM CIM_Fan"), "CIM_Fan");
}

TEST(WqlParser, SaysWhatIsMissingWhereTheClassShouldBe) {
    const auto failure = [](std::string_view text, std::string_view language = "WQL") {
        return failureOf(text, language, queriedClass);
    };
    EXPECT_EQ(failure("SELECT * FROM CIM_Fan", "SQL"), "14: query language 'SQL' is not supported");
    EXPECT_EQ(failure("SELECT * FROM CIM_Fan", "").substr(0, 4), "14: ");
    EXPECT_EQ(failure("DELETE FROM CIM_Fan"),
              "15: the query has 'DELETE' at character 1 where SELECT is expected");
    for (const char* const query :
         {"", "   ", "SELECT", "SELECT * FROM", "SELECT * FROM 7", "SELECT \"* FROM CIM_Fan",
          "FROM CIM_Fan", "SELECT * FROM \"CIM_Fan\""}) {
        EXPECT_EQ(failure(query).substr(0, 4), "15: ") << query;
    }
}

}  // namespace
}  // namespace cimhost
