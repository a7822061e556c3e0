#include "tests/cimhost/cimxml/HandlerFixture.h"

#include <gmock/gmock.h>

#include <memory>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::string input(std::string_view name, std::string_view content,
                  std::string_view attributes = "") {
    return "<PARAMVALUE NAME=\"" + std::string(name) + "\" " + std::string(attributes) + ">" +
           std::string(content) + "</PARAMVALUE>";
}

TestRequest spin(std::string_view parameters = {}) {
    return extrinsic("Spin", instanceName("TEST_Fan", "Id", "f1"),
                     "root%2Ftest%3ATEST_Fan.Id=\"f1\"", parameters);
}

TestRequest reset(std::string_view parameters = {}) {
    return extrinsic("Reset", "<CLASSNAME NAME=\"TEST_Fan\"/>", "root/test:TEST_Fan", parameters);
}

Value number(std::uint64_t value, CimType type = CimType::uint32) {
    return Value::unsignedInteger(type, value);
}

TEST_F(HandlerTest, InvokesAMethodOfAnInstance) {
    provider.methodResult.returnValue = number(0);
    EXPECT_EQ(answer(spin(input("Speed", "<VALUE>5</VALUE>", "PARAMTYPE=\"uint16\""))),
              "<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>0</VALUE></RETURNVALUE>");
    EXPECT_EQ(provider.method, "Spin");
    EXPECT_EQ(*provider.methodTarget->findKey("Id"), Value::string("f1"));
    EXPECT_EQ(provider.principal, "tester");
    ASSERT_EQ(provider.methodArguments.size(), 1U);
    EXPECT_EQ(provider.methodArguments[0].name, "Speed");
    EXPECT_EQ(provider.methodArguments[0].value, number(5, CimType::uint16));
}

TEST_F(HandlerTest, InvokesAMethodOfAClass) {
    provider.methodResult.returnValue = number(1);
    EXPECT_THAT(answer(reset(input("hard", "<VALUE>TRUE</VALUE>"))), HasSubstr("<VALUE>1</VALUE>"));
    EXPECT_TRUE(provider.methodTarget->keys.empty());
    EXPECT_EQ(provider.methodTarget->className, "TEST_Fan");
    EXPECT_EQ(provider.methodArguments.at(0).name, "Hard");
    // Some clients name the class by an instance without keys.
    EXPECT_THAT(
        answer(extrinsic("reset", "<INSTANCENAME CLASSNAME=\"TEST_Fan\"/>", "root/test:TEST_Fan")),
        HasSubstr("<VALUE>1</VALUE>"));
}

TEST_F(HandlerTest, RefusesAMethodOfAnInstanceThatIsNotThere) {
    provider.methodResult.returnValue = number(0);
    const TestRequest request =
        extrinsic("Spin", instanceName("TEST_Fan", "Id", "f9"), "root%2Ftest%3ATEST_Fan.Id=\"f9\"");
    EXPECT_EQ(errorCode(request), 6);
    EXPECT_EQ(provider.method, "") << "the provider is not asked";
}

TEST_F(HandlerTest, TypesArgumentsByTheClassHoweverTheyAreMarked) {
    for (const char* const mark :
         {"", "PARAMTYPE=\"uint16\"", "TYPE=\"uint16\"", "PARAMTYPE=\"UINT16\""}) {
        answer(spin(input("Speed", "<VALUE>0x10</VALUE>", mark)));
        EXPECT_EQ(provider.methodArguments.at(0).value, number(16, CimType::uint16)) << mark;
    }
    EXPECT_EQ(errorCode(spin(input("Speed", "<VALUE>5</VALUE>", "PARAMTYPE=\"string\""))), 13);
    EXPECT_EQ(errorCode(spin(input("Speed", "<VALUE>5</VALUE>", "PARAMTYPE=\"nonsense\""))), 13);
}

TEST_F(HandlerTest, ReadsArgumentsOfEveryShape) {
    const std::string reference =
        "<VALUE.REFERENCE>" + instanceName("TEST_Pump", "Id", "p1") + "</VALUE.REFERENCE>";
    answer(spin(input("Names", "<VALUE.ARRAY><VALUE>a</VALUE><VALUE></VALUE></VALUE.ARRAY>",
                      "PARAMTYPE=\"string\"") +
                input("Near", reference, "PARAMTYPE=\"reference\"") +
                input("All", "<VALUE.REFARRAY>" + reference + "</VALUE.REFARRAY>") +
                input("Settings", "<VALUE>&lt;INSTANCE CLASSNAME='TEST_Settings'/&gt;</VALUE>",
                      "PARAMTYPE=\"string\" EmbeddedObject=\"instance\"") +
                input("Speed", "")));
    ASSERT_EQ(provider.methodArguments.size(), 5U);
    EXPECT_EQ(provider.methodArguments[0].value,
              Value::array(CimType::string, {Value::string("a"), Value::string("")}));
    const auto* const near =
        provider.methodArguments[1].value.get<std::shared_ptr<const ObjectPath>>();
    EXPECT_EQ((*near)->className, "TEST_Pump");
    EXPECT_EQ((*near)->nameSpace, "root/test");
    EXPECT_TRUE(provider.methodArguments[2].value.isArray());
    EXPECT_EQ(provider.methodArguments[3].value.type(), CimType::instance);
    EXPECT_TRUE(provider.methodArguments[4].value.isNull());
}

TEST_F(HandlerTest, RefusesBadArguments) {
    EXPECT_EQ(error(spin(input("Nope", "<VALUE>1</VALUE>"))),
              "4: method Spin has no parameter Nope");
    EXPECT_EQ(
        errorCode(spin(input("Speed", "<VALUE>1</VALUE>") + input("SPEED", "<VALUE>1</VALUE>"))),
        4);
    EXPECT_EQ(errorCode(spin(input("Total", "<VALUE>1</VALUE>"))), 4);
    EXPECT_EQ(error(spin(input("Speed", "<VALUE>65536</VALUE>"))),
              "13: parameter Speed of Spin: \"65536\" is no value of type uint16");
    EXPECT_EQ(errorCode(spin(input("Speed", "<VALUE.ARRAY/>"))), 13);
    EXPECT_EQ(errorCode(spin(input("Near", "<VALUE>TEST_Pump.Id=1</VALUE>"))), 13);
    EXPECT_EQ(provider.method, "");
}

TEST_F(HandlerTest, PassesOverOutputParametersGivenAsNull) {
    answer(spin(input("Total", "")));
    EXPECT_EQ(provider.method, "Spin");
    EXPECT_THAT(provider.methodArguments, IsEmpty());
}

TEST_F(HandlerTest, WritesOutputParametersWithTheirTypes) {
    Instance settings;
    settings.path.className = "TEST_Settings";
    provider.methodResult = {
        number(7),
        {{"Total", number(9, CimType::uint64)}, {"Settings", Value::instance(settings)}}};
    EXPECT_EQ(
        answer(spin()),
        "<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>7</VALUE></RETURNVALUE>"
        "<PARAMVALUE NAME=\"Total\" PARAMTYPE=\"uint64\"><VALUE>9</VALUE></PARAMVALUE>"
        "<PARAMVALUE NAME=\"Settings\" PARAMTYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>"
        "&lt;INSTANCE CLASSNAME=&quot;TEST_Settings&quot;&gt;&lt;/INSTANCE&gt;</VALUE>"
        "</PARAMVALUE>");
}

TEST_F(HandlerTest, LeavesOutNullResultsAndParameters) {
    provider.methodResult = {Value(), {{"Total", Value::null(CimType::uint64)}}};
    EXPECT_EQ(answer(spin()), "");
}

TEST_F(HandlerTest, TellsWhatKeepsAMethodFromBeingInvoked) {
    EXPECT_EQ(errorCode(extrinsic("Nope", "<CLASSNAME NAME=\"TEST_Fan\"/>", "root/test:TEST_Fan")),
              17);
    EXPECT_EQ(
        errorCode(extrinsic("Reset", "<CLASSNAME NAME=\"TEST_Pump\"/>", "root/test:TEST_Pump")),
        16);
    EXPECT_EQ(errorCode(extrinsic("Reset", "<CLASSNAME NAME=\"Nobody\"/>", "root/test:Nobody")), 5);
    EXPECT_EQ(
        errorCode(extrinsic("GetInstance", "<CLASSNAME NAME=\"TEST_Fan\"/>", "root/test:TEST_Fan")),
        17);
    provider.failAfter = 0;
    EXPECT_EQ(error(spin()), "1: the fans are \"out\" & <gone>");
}

TEST_F(HandlerTest, RefusesAMethodCallWhoseHeaderNamesAnotherObject) {
    TestRequest request = spin();
    request.headers["CIMObject"] = "root/test:TEST_Fan.Id=\"f2\"";
    const RecordingReply reply = handle(request);
    EXPECT_EQ(reply.status, 400);
    EXPECT_EQ(reply.cimError, "header-mismatch");
    EXPECT_EQ(provider.method, "");
}

}  // namespace
}  // namespace cimhost
