#include "tests/cimhost/cimxml/HandlerFixture.h"

#include <gmock/gmock.h>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::string_view nothing = "<IRETURNVALUE></IRETURNVALUE>";

std::string object(std::string_view id = "p1") {
    return parameter("ObjectName", instanceName("TEST_Pump", "Id", id));
}

std::string classParameter(std::string_view name, std::string_view className) {
    return parameter(name, "<CLASSNAME NAME=\"" + std::string(className) + "\"/>");
}

std::string textParameter(std::string_view name, std::string_view text) {
    return parameter(name, "<VALUE>" + std::string(text) + "</VALUE>");
}

constexpr std::string_view pathHead =
    "<NAMESPACEPATH><HOST>localhost:5988</HOST><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
    "<NAMESPACE NAME=\"test\"/></LOCALNAMESPACEPATH></NAMESPACEPATH>";

std::string instancePath(std::string_view id) {
    return "<INSTANCEPATH>" + std::string(pathHead) + instanceName("TEST_Pump", "Id", id) +
           "</INSTANCEPATH>";
}

std::string classPath(std::string_view name) {
    return "<CLASSPATH>" + std::string(pathHead) + "<CLASSNAME NAME=\"" + std::string(name) +
           "\"/></CLASSPATH>";
}

TEST_F(HandlerTest, FindsAssociatedInstancesWithTheirFullPath) {
    EXPECT_THAT(answer(intrinsic("Associators", object())),
                HasSubstr("<IRETURNVALUE><VALUE.OBJECTWITHPATH>" + instancePath("p2") +
                          "<INSTANCE CLASSNAME=\"TEST_Pump\">"));
    EXPECT_EQ(answer(intrinsic("AssociatorNames", object("p2"))),
              "<IRETURNVALUE><OBJECTPATH>" + instancePath("p1") + "</OBJECTPATH></IRETURNVALUE>");
}

TEST_F(HandlerTest, FindsReferencesWithTheirFullPath) {
    const std::string link = answer(intrinsic("References", object()));
    EXPECT_THAT(link, HasSubstr("<VALUE.OBJECTWITHPATH><INSTANCEPATH>" + std::string(pathHead) +
                                "<INSTANCENAME CLASSNAME=\"TEST_Link\">"));
    EXPECT_THAT(link, HasSubstr("<PROPERTY.REFERENCE NAME=\"Antecedent\" "
                                "REFERENCECLASS=\"TEST_Element\"><VALUE.REFERENCE>" +
                                instancePath("p1") + "</VALUE.REFERENCE>"));
    EXPECT_THAT(answer(intrinsic("ReferenceNames", object())),
                HasSubstr("<IRETURNVALUE><OBJECTPATH><INSTANCEPATH>"));
}

TEST_F(HandlerTest, FiltersAssociationsByClassAndRole) {
    const auto names = [&](const std::string& filter) {
        return answer(intrinsic("AssociatorNames", object() + filter));
    };
    for (const std::string& filter :
         {classParameter("AssocClass", "test_link"), classParameter("ResultClass", "TEST_Element"),
          textParameter("Role", "ANTECEDENT"), textParameter("ResultRole", "dependent"),
          parameter("Role", ""), parameter("AssocClass", "")}) {
        EXPECT_THAT(names(filter), HasSubstr("p2")) << filter;
    }
    for (const std::string& filter :
         {classParameter("AssocClass", "TEST_SpecialLink"),
          classParameter("ResultClass", "TEST_Fan"), textParameter("Role", "Dependent"),
          textParameter("ResultRole", "Antecedent")}) {
        EXPECT_EQ(names(filter), nothing) << filter;
    }

    const auto references = [&](const std::string& filter) {
        return answer(intrinsic("ReferenceNames", object() + filter));
    };
    EXPECT_THAT(references(classParameter("ResultClass", "TEST_Link")), HasSubstr("TEST_Link"));
    EXPECT_EQ(references(classParameter("ResultClass", "TEST_SpecialLink")), nothing);
    EXPECT_EQ(references(textParameter("Role", "Dependent")), nothing);
}

TEST_F(HandlerTest, SelectsPropertiesOfAssociatedInstances) {
    const std::string text =
        answer(intrinsic("Associators", object() +
                                            parameter("PropertyList",
                                                      "<VALUE.ARRAY><VALUE>flow</VALUE>"
                                                      "</VALUE.ARRAY>") +
                                            booleanParameter("IncludeClassOrigin", true)));
    EXPECT_THAT(text, HasSubstr("<INSTANCE CLASSNAME=\"TEST_Pump\"><PROPERTY NAME=\"Flow\" "
                                "TYPE=\"real32\" CLASSORIGIN=\"TEST_Pump\"><VALUE>2.0</VALUE>"
                                "</PROPERTY></INSTANCE>"));
}

TEST_F(HandlerTest, FindsAssociatedClasses) {
    const std::string target = classParameter("ObjectName", "TEST_Pump");
    EXPECT_EQ(
        answer(intrinsic("AssociatorNames", target)),
        "<IRETURNVALUE><OBJECTPATH>" + classPath("TEST_Element") + "</OBJECTPATH></IRETURNVALUE>");
    const std::string text = answer(intrinsic("Associators", target));
    EXPECT_THAT(text, HasSubstr("<VALUE.OBJECTWITHPATH>" + classPath("TEST_Element") +
                                "<CLASS NAME=\"TEST_Element\">"));
    EXPECT_THAT(text, Not(HasSubstr("<QUALIFIER")));
    EXPECT_THAT(text, Not(HasSubstr("CLASSORIGIN")));
    EXPECT_THAT(
        answer(intrinsic("Associators", target + booleanParameter("IncludeQualifiers", true))),
        HasSubstr("<QUALIFIER"));
}

TEST_F(HandlerTest, FindsReferencingClassesWithAllTheirProperties) {
    const std::string target = classParameter("ObjectName", "TEST_Fan");
    const std::string names = answer(
        intrinsic("ReferenceNames", target + classParameter("ResultClass", "TEST_SpecialLink")));
    EXPECT_EQ(names, "<IRETURNVALUE><OBJECTPATH>" + classPath("TEST_SpecialLink") +
                         "</OBJECTPATH></IRETURNVALUE>");
    const std::string text =
        answer(intrinsic("References", target + classParameter("ResultClass", "TEST_SpecialLink")));
    EXPECT_THAT(text, HasSubstr("NAME=\"Weight\""));
    EXPECT_THAT(text, HasSubstr("NAME=\"Antecedent\""));
    EXPECT_EQ(answer(intrinsic("ReferenceNames", target + textParameter("Role", "Nope"))), nothing);
}

TEST_F(HandlerTest, TakesANameWithoutKeysForTheClass) {
    for (const char* const operation :
         {"Associators", "AssociatorNames", "References", "ReferenceNames"}) {
        const auto target = [&](const std::string& content) {
            return answer(intrinsic(operation, parameter("ObjectName", content)));
        };
        EXPECT_EQ(target("<INSTANCENAME CLASSNAME=\"TEST_Pump\"></INSTANCENAME>"),
                  target("<CLASSNAME NAME=\"TEST_Pump\"/>"));
        EXPECT_THAT(target("<INSTANCENAME CLASSNAME=\"TEST_Pump\"/>"), HasSubstr("<CLASSPATH>"));
        // Where there are no keys to give, it is the one instance.
        EXPECT_EQ(target("<INSTANCENAME CLASSNAME=\"TEST_Only\"/>"), nothing);
    }
}

TEST_F(HandlerTest, RefusesUnknownClassesInAssociationQueries) {
    for (const char* const operation :
         {"Associators", "AssociatorNames", "References", "ReferenceNames"}) {
        EXPECT_EQ(errorCode(intrinsic(operation, classParameter("ObjectName", "Nobody"))), 5);
        EXPECT_EQ(errorCode(intrinsic(operation,
                                      parameter("ObjectName", instanceName("Nobody", "Id", "x")))),
                  5);
        EXPECT_EQ(errorCode(intrinsic(operation, textParameter("ObjectName", "TEST_Pump"))), 4);
        const std::string_view filter =
            std::string_view(operation).starts_with("Ref") ? "ResultClass" : "AssocClass";
        EXPECT_EQ(errorCode(intrinsic(operation, object() + classParameter(filter, "Nobody"))), 4);
        EXPECT_EQ(errorCode(intrinsic(operation, classParameter("ObjectName", "TEST_Pump") +
                                                     classParameter(filter, "Nobody"))),
                  4);
    }
}

}  // namespace
}  // namespace cimhost
