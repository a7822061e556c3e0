#include "tests/cimhost/cimxml/HandlerFixture.h"

#include <gmock/gmock.h>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string classNames(std::initializer_list<std::string_view> names) {
    std::string text = "<IRETURNVALUE>";
    for (const std::string_view name : names) {
        text += "<CLASSNAME NAME=\"" + std::string(name) + "\"/>";
    }
    return text + "</IRETURNVALUE>";
}

TEST_F(HandlerTest, GetsAClassWithItsDefaults) {
    const std::string text = answer(intrinsic("GetClass", className("test_fan")));
    EXPECT_THAT(text,
                StartsWith("<IRETURNVALUE><CLASS NAME=\"TEST_Fan\" SUPERCLASS=\"TEST_Element\">"));
    EXPECT_THAT(text, Not(HasSubstr("NAME=\"Id\"")));  // LocalOnly
    EXPECT_THAT(text, HasSubstr("<QUALIFIER "));       // IncludeQualifiers
    EXPECT_THAT(text, Not(HasSubstr("CLASSORIGIN")));  // no IncludeClassOrigin
}

TEST_F(HandlerTest, GetsAClassAsAskedFor) {
    const std::string text =
        answer(intrinsic("GetClass", className("TEST_Fan") + booleanParameter("LocalOnly", false) +
                                         booleanParameter("IncludeQualifiers", false) +
                                         booleanParameter("IncludeClassOrigin", true) +
                                         parameter("PropertyList",
                                                   "<VALUE.ARRAY><VALUE>ID</VALUE>"
                                                   "</VALUE.ARRAY>")));
    EXPECT_THAT(text,
                HasSubstr("<PROPERTY NAME=\"Id\" TYPE=\"string\" CLASSORIGIN=\"TEST_Element\" "
                          "PROPAGATED=\"true\"></PROPERTY><METHOD "));
    EXPECT_THAT(text, Not(HasSubstr("QUALIFIER")));
}

TEST_F(HandlerTest, AnswersUnknownClassesByOperation) {
    EXPECT_EQ(errorCode(intrinsic("GetClass", className("Nobody"))), 6);
    EXPECT_EQ(error(intrinsic("GetClass", className("Nobody"))),
              "6: there is no class Nobody in namespace root/test");
    EXPECT_EQ(errorCode(intrinsic("EnumerateClasses", className("Nobody"))), 5);
    EXPECT_EQ(errorCode(intrinsic("EnumerateClassNames", className("Nobody"))), 5);
}

TEST_F(HandlerTest, EnumeratesClassNamesOfOneLevelOrAll) {
    EXPECT_EQ(answer(intrinsic("EnumerateClassNames")),
              classNames({"TEST_Element", "TEST_Settings", "TEST_Link", "TEST_Keys", "TEST_Only",
                          "TEST_Values"}));
    EXPECT_EQ(answer(intrinsic("EnumerateClassNames", booleanParameter("DeepInheritance", true))),
              classNames({"TEST_Element", "TEST_Fan", "TEST_Pump", "TEST_Settings", "TEST_Link",
                          "TEST_SpecialLink", "TEST_Keys", "TEST_Only", "TEST_Values"}));
    EXPECT_EQ(answer(intrinsic("EnumerateClassNames", className("TEST_Element"))),
              classNames({"TEST_Fan", "TEST_Pump"}));
    EXPECT_EQ(answer(intrinsic("EnumerateClassNames", className("TEST_Fan"))), classNames({}));
}

TEST_F(HandlerTest, EnumeratesClasses) {
    EXPECT_EQ(
        answer(intrinsic("EnumerateClasses",
                         className("TEST_Link") + booleanParameter("IncludeQualifiers", false))),
        "<IRETURNVALUE><CLASS NAME=\"TEST_SpecialLink\" SUPERCLASS=\"TEST_Link\">"
        "<PROPERTY NAME=\"Weight\" TYPE=\"uint8\"></PROPERTY></CLASS></IRETURNVALUE>");
    const std::string all =
        answer(intrinsic("EnumerateClasses", booleanParameter("DeepInheritance", true) +
                                                 booleanParameter("LocalOnly", false) +
                                                 booleanParameter("IncludeClassOrigin", true)));
    for (const char* const name : {"TEST_Element", "TEST_Fan", "TEST_Pump", "TEST_Values"}) {
        EXPECT_THAT(all, HasSubstr("<CLASS NAME=\"" + std::string(name) + "\""));
    }
}

TEST_F(HandlerTest, GetsQualifierDeclarations) {
    const auto name = [](std::string_view text) {
        return parameter("QualifierName", "<VALUE>" + std::string(text) + "</VALUE>");
    };
    EXPECT_EQ(answer(intrinsic("GetQualifier", name("KEY"))),
              "<IRETURNVALUE><QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" "
              "OVERRIDABLE=\"false\"><SCOPE REFERENCE=\"true\" PROPERTY=\"true\"></SCOPE>"
              "<VALUE>false</VALUE></QUALIFIER.DECLARATION></IRETURNVALUE>");
    EXPECT_EQ(errorCode(intrinsic("GetQualifier", name("Nope"))), 6);
}

TEST_F(HandlerTest, EnumeratesQualifierDeclarations) {
    const std::string text = answer(intrinsic("EnumerateQualifiers"));
    for (const char* const name : {"Abstract", "Association", "Description", "Key", "ValueMap"}) {
        EXPECT_THAT(text, HasSubstr("<QUALIFIER.DECLARATION NAME=\"" + std::string(name) + "\""));
    }
}

}  // namespace
}  // namespace cimhost
