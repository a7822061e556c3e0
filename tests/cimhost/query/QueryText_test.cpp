#include "cimhost/query/QueryText.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/operations/OperationsFixture.h"

namespace cimhost::test {
namespace {

TEST(QueryText, FindsTheClassBehindFrom) {
    EXPECT_EQ(queriedClass("WQL", "SELECT * FROM CIM_Fan"), "CIM_Fan");
    EXPECT_EQ(queriedClass("DMTF:CQL", "select Name,Speed from CIM_Fan where Speed > 3"),
              "CIM_Fan");
    EXPECT_EQ(queriedClass("cql", "SELECT\n*\nFROM\tCIM_Fan;"), "CIM_Fan");
}

TEST(QueryText, PassesOverFromInStrings) {
    EXPECT_EQ(queriedClass("WQL", "SELECT \"a FROM b\", 'it\\'s FROM c' FROM CIM_Fan"), "CIM_Fan");
}

TEST(QueryText, RefusesUnknownLanguages) {
    EXPECT_EQ(failureOfCall([] { queriedClass("SQL", "SELECT * FROM CIM_Fan"); }),
              "14: query language 'SQL' is not supported");
    EXPECT_EQ(codeOfCall([] { queriedClass("", "SELECT * FROM CIM_Fan"); }), 14);
}

TEST(QueryText, RefusesTextsWithoutAClass) {
    for (const char* const query :
         {"", "   ", "SELECT", "SELECT * FROM", "SELECT * FROM 7", "DELETE FROM CIM_Fan",
          "SELECT \"* FROM CIM_Fan", "FROM CIM_Fan", "SELECT * FROM \"CIM_Fan\""}) {
        EXPECT_EQ(codeOfCall([&] { queriedClass("WQL", query); }), 15) << query;
    }
}

}  // namespace
}  // namespace cimhost::test
