#include "cimhost/repository/CimError.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace cimhost {
namespace {

TEST(CimError, KeepsCodeAndDescription) {
    const CimError error(CimCode::notFound, "no such fan");
    EXPECT_EQ(error.code(), CimCode::notFound);
    EXPECT_STREQ(error.what(), "no such fan");
}

TEST(CimError, NamesTheCodesAsTheStandardDoes) {
    EXPECT_STREQ(codeName(CimCode::failed), "CIM_ERR_FAILED");
    EXPECT_STREQ(codeName(CimCode::invalidParameter), "CIM_ERR_INVALID_PARAMETER");
    EXPECT_STREQ(codeName(CimCode::methodNotFound), "CIM_ERR_METHOD_NOT_FOUND");
    EXPECT_STREQ(codeName(CimCode::queryFeatureNotSupported),
                 "CIM_ERR_QUERY_FEATURE_NOT_SUPPORTED");
}

TEST(CimError, GivesEveryCodeANameOfItsOwn) {
    std::set<std::string> names;
    for (int code = 1; code <= 17; ++code) names.insert(codeName(static_cast<CimCode>(code)));
    for (const CimCode code : {CimCode::invalidEnumerationContext, CimCode::serverLimitsExceeded,
                               CimCode::serverIsShuttingDown, CimCode::queryFeatureNotSupported}) {
        names.insert(codeName(code));
    }
    EXPECT_EQ(names.size(), 21U);
}

TEST(CimError, CallsANumberThatIsNoCodeAFailure) {
    EXPECT_STREQ(codeName(static_cast<CimCode>(4711)), "CIM_ERR_FAILED");
}

}  // namespace
}  // namespace cimhost
