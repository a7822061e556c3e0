#include "cmpi/cmpimacs.h"
#include "tests/support/MannerCall.h"

namespace cimhost {
namespace {

TEST(EncapsulationManner, MakesTextsOfNull) {
    MannerCall call("sfcb");
    const CMPIString* const text = call.eft().newString(call.broker(), nullptr, &call.status);
    EXPECT_EQ(call.status, CMPI_RC_OK);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->ft->getCharPtr(text, nullptr), nullptr);
}

TEST(EncapsulationManner, LeavesTheStatusOfATextAlone) {
    MannerCall call("sfcb");
    const CMPIString* const text = call.eft().newString(call.broker(), "a", nullptr);
    call.status.rc = CMPI_RC_ERROR;
    EXPECT_STREQ(text->ft->getCharPtr(text, &call.status), "a");
    EXPECT_EQ(call.status, CMPI_RC_ERROR);
}

TEST(EncapsulationManner, KnowsSubclassesWithinANameSpaceAlone) {
    MannerCall call("sfcb");
    const CMPIObjectPath* const path = call.newPath("Test_Derived");
    EXPECT_TRUE(call.eft().classPathIsA(call.broker(), path, "Test_Base", nullptr));
    path->ft->setNameSpace(path, "");
    EXPECT_FALSE(call.eft().classPathIsA(call.broker(), path, "Test_Derived", &call.status));
    EXPECT_EQ(call.status, CMPI_RC_OK);
}

TEST(EncapsulationManner, KnowsNoTypes) {
    MannerCall call("sfcb");
    const CMPIObjectPath* const path = call.newPath();
    EXPECT_FALSE(call.eft().isOfType(call.broker(), path, "CMPIObjectPath", nullptr));
    EXPECT_EQ(textOf(call.eft().getType(call.broker(), path, nullptr)), "");
}

TEST(EncapsulationManner, ReturnsMessagesAsFailures) {
    MannerCall call("sfcb");
    EXPECT_EQ(
        textOf(call.eft().getMessage(call.broker(), "id", "Fan $0", &call.status, 1, CMFmtSint(4))),
        "Fan 4");
    EXPECT_EQ(call.status, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST(EncapsulationManner, GivesContextsThePrincipalAlone) {
    MannerCall call("sfcb");
    RequestContext request;
    request.nameSpace = "root/test";
    request.acceptLanguage = "de";
    const CMPIContext* const context = makeContext(call.realBroker, request);
    EXPECT_EQ(context->ft->getEntryCount(context, nullptr), 2U);
    context->ft->getEntry(context, CMPIInitNameSpace, &call.status);
    EXPECT_EQ(call.status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    const CMPIString* const nobody =
        context->ft->getEntry(context, CMPIPrincipal, &call.status).value.string;
    EXPECT_EQ(call.status, CMPI_RC_OK);
    EXPECT_EQ(nobody->ft->getCharPtr(nobody, nullptr), nullptr);
}

}  // namespace
}  // namespace cimhost
