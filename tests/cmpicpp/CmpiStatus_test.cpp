#include "cmpicpp/CmpiStatus.h"

#include "tests/cmpicpp/BrokerFixture.h"

#include <map>
#include <string>

namespace CmpiCpp {
namespace {

class CmpiStatusOf : public test::BrokerTest {};

TEST(CmpiStatus, NamesCodeAndText) {
    EXPECT_EQ(CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such fan").str(),
              "CMPI_RC_ERR_NOT_FOUND (6): no such fan");
}

TEST(CmpiStatus, EndsAfterTheParenthesisWithoutAText) {
    EXPECT_EQ(CmpiStatus(CMPI_RC_ERR_FAILED).str(), "CMPI_RC_ERR_FAILED (1)");
}

TEST(CmpiStatus, CallsUnknownCodesByNumber) {
    EXPECT_EQ(CmpiStatus(static_cast<CMPIrc>(77)).str(), "CMPI_RC (77)");
    EXPECT_EQ(CmpiStatus(static_cast<CMPIrc>(-1), "odd").str(), "CMPI_RC (-1): odd");
}

TEST(CmpiStatus, IsAnExceptionWhoseTextIsTheMessageAlone) {
    try {
        throw CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "keep out");
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "keep out");
    }
}

TEST(RcName, KnowsTheStandardsList) {
    const std::map<int, std::string> names{
        {0, "CMPI_RC_OK"},
        {4, "CMPI_RC_ERR_INVALID_PARAMETER"},
        {12, "CMPI_RC_ERR_NO_SUCH_PROPERTY"},
        {17, "CMPI_RC_ERR_METHOD_NOT_FOUND"},
        {18, "CMPI_RC_NO_MORE_ELEMENTS"},
        {29, "CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED"},
        {51, "CMPI_RC_NEVER_UNLOAD"},
        {62, "CMPI_RC_ERR_NOT_IN_CODEPAGE"},
        {100, "CMPI_RC_ERROR_SYSTEM"},
        {200, "CMPI_RC_ERROR"},
    };
    for (const auto& [code, name] : names) EXPECT_EQ(rcName(static_cast<CMPIrc>(code)), name);
}

TEST(RcName, IsNullOutsideTheStandardsList) {
    for (const int code : {-1, 19, 26, 28, 30, 49, 63, 99, 101, 201}) {
        EXPECT_EQ(rcName(static_cast<CMPIrc>(code)), nullptr) << code;
    }
}

TEST_F(CmpiStatusOf, TheCInterfaceCopiesTheMessage) {
    const auto statusInAnEndedCall = [&] {
        const cimhost::CallScope call;
        CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
        status.msg = handle()->eft->newString(handle(), "the fan is gone", nullptr);
        return CmpiStatus(status);
    };
    EXPECT_EQ(statusInAnEndedCall().message(), "the fan is gone");
}

TEST_F(CmpiStatusOf, TheCInterfaceLacksAMessageThatTheBrokerThrowsFor) {
    CMPIStringFT table{};
    table.getCharPtr = [](const CMPIString*, CMPIStatus*) -> const char* { throw 1; };
    CMPIString message{&table, &table};
    EXPECT_EQ(CmpiStatus(CMPIStatus{CMPI_RC_ERR_NOT_FOUND, &message}).message(), "");
}

TEST_F(CmpiStatusOf, TheCInterfaceMayLackAMessage) {
    const CmpiStatus status(CMPIStatus{CMPI_RC_ERR_NOT_FOUND, nullptr});
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(status.message(), "");
}

TEST(Check, ThrowsUnlessTheCodeIsOk) {
    EXPECT_NO_THROW(check(CMPIStatus{CMPI_RC_OK, nullptr}));
    EXPECT_EQ(test::codeOf([] {
                  check(CMPIStatus{CMPI_RC_ERR_INVALID_CLASS, nullptr});
              }),
              CMPI_RC_ERR_INVALID_CLASS);
}

}  // namespace
}  // namespace CmpiCpp
