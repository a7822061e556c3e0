#include "tests/cimhost/cimxml/HandlerFixture.h"
#include "tests/cimhost/cimxml/ReplyChecker.h"

#include <gmock/gmock.h>

namespace cimhost {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string fanName(std::string_view id = "f1") {
    return parameter("InstanceName", instanceName("TEST_Fan", "Id", id));
}

std::string propertyList(std::string_view values) {
    return parameter("PropertyList", "<VALUE.ARRAY>" + std::string(values) + "</VALUE.ARRAY>");
}

TEST_F(HandlerTest, GetsAnInstance) {
    EXPECT_EQ(answer(intrinsic("GetInstance", fanName())),
              "<IRETURNVALUE><INSTANCE CLASSNAME=\"TEST_Fan\">"
              "<PROPERTY NAME=\"Id\" TYPE=\"string\"><VALUE>f1</VALUE></PROPERTY>"
              "<PROPERTY NAME=\"Count\" TYPE=\"uint32\"><VALUE>3</VALUE></PROPERTY>"
              "<PROPERTY NAME=\"Running\" TYPE=\"boolean\"><VALUE>true</VALUE></PROPERTY>"
              "</INSTANCE></IRETURNVALUE>");
}

TEST_F(HandlerTest, GetsAnInstanceWhoseClassHasNoKeys) {
    EXPECT_THAT(
        answer(intrinsic("GetInstance",
                         parameter("InstanceName", "<INSTANCENAME CLASSNAME='TEST_Only'/>"))),
        HasSubstr("<VALUE>alone</VALUE>"));
}

TEST_F(HandlerTest, GetsTheListedPropertiesOnly) {
    const auto get = [&](std::string_view list) {
        return answer(intrinsic("GetInstance", fanName() + propertyList(list)));
    };
    EXPECT_EQ(get("<VALUE>RUNNING</VALUE><VALUE>Nope</VALUE>"),
              "<IRETURNVALUE><INSTANCE CLASSNAME=\"TEST_Fan\"><PROPERTY NAME=\"Running\" "
              "TYPE=\"boolean\"><VALUE>true</VALUE></PROPERTY></INSTANCE></IRETURNVALUE>");
    EXPECT_EQ(get(""), "<IRETURNVALUE><INSTANCE CLASSNAME=\"TEST_Fan\"></INSTANCE></IRETURNVALUE>");
}

TEST_F(HandlerTest, GetsTheSameInstanceWithLocalOnlyAndQualifiersAskedFor) {
    const std::string plain = answer(intrinsic("GetInstance", fanName()));
    for (const bool value : {true, false}) {
        EXPECT_EQ(
            answer(intrinsic("GetInstance", fanName() + booleanParameter("LocalOnly", value) +
                                                booleanParameter("IncludeQualifiers", value))),
            plain);
    }
    EXPECT_THAT(
        answer(intrinsic("GetInstance", fanName() + booleanParameter("IncludeClassOrigin", true))),
        HasSubstr("<PROPERTY NAME=\"Id\" TYPE=\"string\" CLASSORIGIN=\"TEST_Element\">"));
}

TEST_F(HandlerTest, TellsUnknownInstancesFromUnknownClassesAndBadNames) {
    EXPECT_EQ(errorCode(intrinsic("GetInstance", fanName("f9"))), 6);
    EXPECT_EQ(errorCode(intrinsic(
                  "GetInstance", parameter("InstanceName", instanceName("TEST_Pump", "Id", "p9")))),
              6);
    EXPECT_EQ(errorCode(intrinsic("GetInstance",
                                  parameter("InstanceName", instanceName("Nobody", "Id", "x")))),
              5);
    EXPECT_EQ(errorCode(intrinsic("GetInstance",
                                  parameter("InstanceName", instanceName("TEST_Fan", "Key", "x")))),
              4);
    EXPECT_EQ(
        errorCode(intrinsic("GetInstance",
                            parameter("InstanceName", "<INSTANCENAME CLASSNAME='TEST_Fan'/>"))),
        4);
    EXPECT_EQ(errorCode(intrinsic("GetInstance", parameter("InstanceName", "<VALUE>x</VALUE>"))),
              4);
    EXPECT_EQ(
        errorCode(intrinsic("GetInstance",
                            parameter("InstanceName", "<INSTANCENAME CLASSNAME='TEST_Keys'/>"))),
        4);
}

TEST_F(HandlerTest, EnumeratesInstancesOfSubclassesWithTheirOwnNames) {
    const std::string text = answer(intrinsic("EnumerateInstances", className("TEST_Element")));
    EXPECT_THAT(text,
                HasSubstr("<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"TEST_Fan\">"
                          "<KEYBINDING NAME=\"Id\"><KEYVALUE VALUETYPE=\"string\">f1</KEYVALUE>"
                          "</KEYBINDING></INSTANCENAME><INSTANCE CLASSNAME=\"TEST_Fan\">"));
    EXPECT_THAT(text, HasSubstr("<INSTANCE CLASSNAME=\"TEST_Pump\">"));
    EXPECT_THAT(text, HasSubstr("<PROPERTY NAME=\"Flow\" TYPE=\"real32\"><VALUE>1.5</VALUE>"));
}

TEST_F(HandlerTest, HidesWhatSubclassesAddWithoutDeepInheritance) {
    const std::string text =
        answer(intrinsic("EnumerateInstances",
                         className("TEST_Element") + booleanParameter("DeepInheritance", false)));
    EXPECT_THAT(text, HasSubstr("<INSTANCE CLASSNAME=\"TEST_Pump\">"));
    EXPECT_THAT(text, HasSubstr("NAME=\"Count\""));
    EXPECT_THAT(text, Not(HasSubstr("NAME=\"Flow\"")));
    EXPECT_THAT(text, Not(HasSubstr("NAME=\"Running\"")));
}

TEST_F(HandlerTest, EnumeratesNothingAsAnEmptyResult) {
    provider.instances.clear();
    EXPECT_EQ(answer(intrinsic("EnumerateInstances", className("TEST_Fan"))),
              "<IRETURNVALUE></IRETURNVALUE>");
    EXPECT_EQ(answer(intrinsic("EnumerateInstanceNames", className("TEST_Fan"))),
              "<IRETURNVALUE></IRETURNVALUE>");
    EXPECT_EQ(errorCode(intrinsic("EnumerateInstances", className("Nobody"))), 5);
    EXPECT_EQ(errorCode(intrinsic("EnumerateInstanceNames", className("Nobody"))), 5);
}

TEST_F(HandlerTest, RepliesToClientsOfTypedKeysByTheRulesToo) {
    TestRequest request = intrinsic("EnumerateInstanceNames", className("TEST_Fan"));
    request.body.replace(request.body.find("DTDVERSION=\"2.0\""), 16, "DTDVERSION=\"2.4\"");
    const RecordingReply reply = handle(request);
    EXPECT_EQ(problemOfReply(reply.body), "") << reply.body;
    EXPECT_THAT(reply.body, HasSubstr("DTDVERSION=\"2.4\""));
    EXPECT_THAT(reply.body, HasSubstr("<KEYVALUE VALUETYPE=\"string\" TYPE=\"string\">"));
}

TEST_F(HandlerTest, EnumeratesInstanceNames) {
    EXPECT_EQ(answer(intrinsic("EnumerateInstanceNames", className("test_only"))),
              "<IRETURNVALUE><INSTANCENAME CLASSNAME=\"TEST_Only\"></INSTANCENAME></IRETURNVALUE>");
    EXPECT_EQ(
        answer(intrinsic("EnumerateInstanceNames", className("TEST_Link"))),
        "<IRETURNVALUE><INSTANCENAME CLASSNAME=\"TEST_Link\"><KEYBINDING NAME=\"Antecedent\">"
        "<VALUE.REFERENCE>" +
            instanceName("TEST_Pump", "Id", "p1") +
            "</VALUE.REFERENCE></KEYBINDING><KEYBINDING NAME=\"Dependent\"><VALUE.REFERENCE>" +
            instanceName("TEST_Pump", "Id", "p2") +
            "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME></IRETURNVALUE>");
}

std::string newInstance(std::string_view properties, std::string_view name = "TEST_Fan") {
    return parameter("NewInstance", "<INSTANCE CLASSNAME='" + std::string(name) + "'>" +
                                        std::string(properties) + "</INSTANCE>");
}

TEST_F(HandlerTest, CreatesAnInstanceAndTellsItsName) {
    EXPECT_EQ(answer(intrinsic(
                  "CreateInstance",
                  newInstance("<QUALIFIER NAME='Version' TYPE='string'><VALUE>1</VALUE></QUALIFIER>"
                              "<PROPERTY NAME='id' TYPE='string'><VALUE>new</VALUE></PROPERTY>"
                              "<PROPERTY NAME='Count' TYPE='uint32'><VALUE>0x10</VALUE></PROPERTY>"
                              "<PROPERTY NAME='Running' TYPE='boolean'/>"))),
              "<IRETURNVALUE>" + instanceName("TEST_Fan", "Id", "new") + "</IRETURNVALUE>");
    ASSERT_TRUE(provider.created);
    EXPECT_EQ(provider.created->find("Count")->value, Value::unsignedInteger(CimType::uint32, 16));
    EXPECT_TRUE(provider.created->find("Running")->value.isNull());
}

TEST_F(HandlerTest, RefusesToCreateWhatDoesNotFitTheClass) {
    EXPECT_EQ(errorCode(intrinsic("CreateInstance", newInstance("", "Nobody"))), 5);
    EXPECT_EQ(errorCode(intrinsic("CreateInstance",
                                  newInstance("<PROPERTY NAME='Nope' TYPE='string'/>"))),
              12);
    EXPECT_EQ(errorCode(intrinsic("CreateInstance",
                                  newInstance("<PROPERTY NAME='Count' TYPE='string'/>"))),
              13);
    EXPECT_EQ(
        errorCode(intrinsic("CreateInstance", newInstance("<PROPERTY NAME='Count' TYPE='uint32'>"
                                                          "<VALUE>-1</VALUE></PROPERTY>"))),
        13);
    EXPECT_EQ(errorCode(intrinsic("CreateInstance", newInstance("", "TEST_Keys"))), 7);
    EXPECT_EQ(errorCode(intrinsic("CreateInstance", parameter("NewInstance", "<VALUE/>"))), 4);
    EXPECT_FALSE(provider.created);
}

std::string modifiedInstance(std::string_view properties, std::string_view name = "TEST_Fan") {
    return parameter("ModifiedInstance",
                     "<VALUE.NAMEDINSTANCE>" + instanceName("TEST_Fan", "Id", "f1") +
                         "<INSTANCE CLASSNAME='" + std::string(name) + "'>" +
                         std::string(properties) + "</INSTANCE></VALUE.NAMEDINSTANCE>");
}

TEST_F(HandlerTest, ModifiesAnInstanceAndAnswersNothing) {
    const std::string count = "<PROPERTY NAME='Count' TYPE='uint32'><VALUE>8</VALUE></PROPERTY>";
    EXPECT_EQ(answer(intrinsic("ModifyInstance", modifiedInstance(count) +
                                                     booleanParameter("IncludeQualifiers", true))),
              "");
    ASSERT_TRUE(provider.modified);
    EXPECT_EQ(provider.modified->find("Count")->value, Value::unsignedInteger(CimType::uint32, 8));
    EXPECT_EQ(*provider.modified->path.findKey("Id"), Value::string("f1"));
    EXPECT_EQ(provider.modifiedProperties, std::nullopt);
    EXPECT_EQ(answer(intrinsic("ModifyInstance",
                               modifiedInstance(count) + propertyList("<VALUE>Count</VALUE>"))),
              "");
    EXPECT_EQ(provider.modifiedProperties, std::vector<std::string>{"Count"});
}

TEST_F(HandlerTest, RefusesModificationsThatDoNotFit) {
    EXPECT_EQ(errorCode(intrinsic("ModifyInstance",
                                  modifiedInstance("<PROPERTY NAME='Nope' TYPE='string'/>"))),
              12);
    EXPECT_EQ(errorCode(intrinsic("ModifyInstance", modifiedInstance("", "TEST_Pump"))), 4);
    EXPECT_EQ(errorCode(intrinsic("ModifyInstance", parameter("ModifiedInstance",
                                                              "<INSTANCE CLASSNAME='TEST_Fan'/>"))),
              4);
    EXPECT_FALSE(provider.modified);
}

TEST_F(HandlerTest, DeletesAnInstanceAndAnswersNothing) {
    EXPECT_EQ(answer(intrinsic("DeleteInstance", fanName())), "");
    ASSERT_TRUE(provider.deleted);
    EXPECT_EQ(*provider.deleted->findKey("Id"), Value::string("f1"));
    EXPECT_EQ(errorCode(intrinsic("DeleteInstance",
                                  parameter("InstanceName", instanceName("Nobody", "Id", "x")))),
              5);
}

std::string propertyName(std::string_view name) {
    return parameter("PropertyName", "<VALUE>" + std::string(name) + "</VALUE>");
}

TEST_F(HandlerTest, GetsSingleProperties) {
    const auto get = [&](std::string_view name) {
        return answer(intrinsic("GetProperty", propertyName(name) + fanName()));
    };
    EXPECT_EQ(get("count"), "<IRETURNVALUE><VALUE>3</VALUE></IRETURNVALUE>");
    EXPECT_EQ(get("Settings"), "<IRETURNVALUE></IRETURNVALUE>");
    provider.instances[0].set(
        "Speeds", Value::array(CimType::uint16, {Value::unsignedInteger(CimType::uint16, 1)}));
    EXPECT_EQ(get("Speeds"),
              "<IRETURNVALUE><VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY></IRETURNVALUE>");
    EXPECT_EQ(errorCode(intrinsic("GetProperty", propertyName("Nope") + fanName())), 12);
    EXPECT_EQ(errorCode(intrinsic("GetProperty", propertyName("Count") + fanName("f9"))), 6);
}

TEST_F(HandlerTest, SetsSingleProperties) {
    const auto set = [&](std::string_view name, std::string_view value) {
        return intrinsic("SetProperty", propertyName(name) + std::string(value) + fanName());
    };
    EXPECT_EQ(answer(set("Count", parameter("NewValue", "<VALUE>9</VALUE>"))), "");
    EXPECT_EQ(provider.modified->find("Count")->value, Value::unsignedInteger(CimType::uint32, 9));
    EXPECT_EQ(provider.modifiedProperties, std::vector<std::string>{"Count"});
    EXPECT_EQ(
        answer(set("Speeds", parameter("NewValue", "<VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY>"))),
        "");
    EXPECT_EQ(provider.modified->find("Speeds")->value.get<Value::Array>()->size(), 1U);
    EXPECT_EQ(answer(set("Running", parameter("NewValue", ""))), "");
    EXPECT_TRUE(provider.modified->find("Running")->value.isNull());
    EXPECT_EQ(answer(set("Running", "")), "");

    EXPECT_EQ(errorCode(set("Nope", parameter("NewValue", "<VALUE>9</VALUE>"))), 12);
    EXPECT_EQ(errorCode(set("Count", parameter("NewValue", "<VALUE>x</VALUE>"))), 13);
    EXPECT_EQ(errorCode(set("Count", parameter("NewValue", "<VALUE.ARRAY/>"))), 13);
}

TEST_F(HandlerTest, AnswersQueriesInALanguageThatNobodyUnderstands) {
    const int code = errorCode(
        intrinsic("ExecQuery", parameter("QueryLanguage", "<VALUE>NOSUCH</VALUE>") +
                                   parameter("Query", "<VALUE>SELECT * FROM TEST_Fan</VALUE>")));
    EXPECT_TRUE(code == 7 || code == 14) << code;
}

TEST_F(HandlerTest, WritesEmbeddedInstancesThatItReads) {
    EXPECT_THAT(answer(intrinsic(
                    "CreateInstance",
                    newInstance("<PROPERTY NAME='Id' TYPE='string'><VALUE>new</VALUE></PROPERTY>"
                                "<PROPERTY NAME='Settings' TYPE='string' EmbeddedObject='instance'>"
                                "<VALUE>&lt;INSTANCE CLASSNAME=&quot;TEST_Settings&quot;&gt;"
                                "&lt;PROPERTY NAME=&quot;Level&quot; TYPE=&quot;uint16&quot;&gt;"
                                "&lt;VALUE&gt;5&lt;/VALUE&gt;&lt;/PROPERTY&gt;&lt;/INSTANCE&gt;"
                                "</VALUE></PROPERTY>"))),
                StartsWith("<IRETURNVALUE><INSTANCENAME"));
    provider.instances[0].set("Settings", provider.created->find("Settings")->value);
    EXPECT_THAT(
        answer(intrinsic("GetInstance", fanName())),
        HasSubstr("<PROPERTY NAME=\"Settings\" TYPE=\"string\" EmbeddedObject=\"instance\">"
                  "<VALUE>&lt;INSTANCE CLASSNAME=&quot;TEST_Settings&quot;&gt;&lt;PROPERTY "
                  "NAME=&quot;Level&quot; TYPE=&quot;uint16&quot;&gt;&lt;VALUE&gt;5&lt;/VALUE&gt;"
                  "&lt;/PROPERTY&gt;&lt;/INSTANCE&gt;</VALUE></PROPERTY>"));
}

}  // namespace
}  // namespace cimhost
