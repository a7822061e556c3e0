#include "cimhost/cimxml/ClassWriter.h"

#include "tests/cimhost/cimxml/ReplyChecker.h"
#include "tests/cimhost/cimxml/TestSchema.h"

#include <gtest/gtest.h>

#include <memory>

namespace cimhost {
namespace {

class ClassWriterTest : public testing::Test {
protected:
    ClassWriterTest() { fillTestSchema(_repository); }

    std::string written(const auto& definition, const ClassOptions& options = {}) const {
        XmlBuffer buffer;
        ObjectWriter objects(buffer, "host", "root/test");
        ClassWriter(buffer, objects, nameSpace(), options).write(definition);
        EXPECT_EQ(
            problemOfReply("<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" "
                           "DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">"
                           "<SIMPLERSP><IMETHODRESPONSE NAME=\"x\"><IRETURNVALUE>" +
                           std::string(buffer.view()) +
                           "</IRETURNVALUE></IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>"),
            "");
        return std::string(buffer.view());
    }

    std::string classText(std::string_view className, const ClassOptions& options = {}) const {
        return written(*nameSpace().findClass(className), options);
    }

    const NameSpace& nameSpace() const { return _repository.get("root/test"); }

private:
    Repository _repository;
};

bool has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

TEST_F(ClassWriterTest, WritesAClassInFull) {
    const std::string text = classText("TEST_Element");
    EXPECT_TRUE(
        text.starts_with("<CLASS NAME=\"TEST_Element\"><QUALIFIER NAME=\"Abstract\" "
                         "TYPE=\"boolean\" TOSUBCLASS=\"false\"><VALUE>true</VALUE></QUALIFIER>"
                         "<QUALIFIER NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\">"
                         "<VALUE>Whatever there is</VALUE></QUALIFIER>"))
        << text;
    EXPECT_TRUE(
        has(text,
            "<PROPERTY NAME=\"Id\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\" "
            "OVERRIDABLE=\"false\"><VALUE>true</VALUE></QUALIFIER></PROPERTY>"))
        << text;
    EXPECT_TRUE(has(text, "<VALUE>Says &quot;&lt;how many&gt;&quot; &amp; more</VALUE>")) << text;
    EXPECT_TRUE(has(text,
                    "<QUALIFIER NAME=\"MaxValue\" TYPE=\"sint64\"><VALUE>9</VALUE></QUALIFIER>"
                    "<VALUE>5</VALUE></PROPERTY>"))
        << text;
    EXPECT_TRUE(has(text, "<METHOD NAME=\"Reset\" TYPE=\"uint32\">")) << text;
    EXPECT_TRUE(has(text, "<PARAMETER NAME=\"Hard\" TYPE=\"boolean\">")) << text;
}

TEST_F(ClassWriterTest, WritesOnlyWhatTheClassAddsWhenLocalOnly) {
    const std::string text = classText("TEST_Fan");
    EXPECT_TRUE(text.starts_with("<CLASS NAME=\"TEST_Fan\" SUPERCLASS=\"TEST_Element\">")) << text;
    EXPECT_FALSE(has(text, "NAME=\"Id\""));
    EXPECT_FALSE(has(text, "NAME=\"Reset\""));
    EXPECT_FALSE(has(text, "PROPAGATED"));
    EXPECT_FALSE(has(text, "MaxValue"));  // inherited by the overriding property
    EXPECT_TRUE(has(text, "<PROPERTY NAME=\"Count\" TYPE=\"uint32\">"));
    EXPECT_TRUE(has(text, "<VALUE>Blades</VALUE>"));
    EXPECT_TRUE(has(text, "<METHOD NAME=\"Spin\" TYPE=\"uint32\">"));
}

TEST_F(ClassWriterTest, MarksWhatIsInheritedOtherwise) {
    ClassOptions options;
    options.localOnly = false;
    options.includeClassOrigin = true;
    const std::string text = classText("TEST_Fan", options);
    EXPECT_TRUE(
        has(text,
            "<PROPERTY NAME=\"Id\" TYPE=\"string\" CLASSORIGIN=\"TEST_Element\" "
            "PROPAGATED=\"true\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\" PROPAGATED=\"true\" "
            "OVERRIDABLE=\"false\">"))
        << text;
    EXPECT_TRUE(has(text, "<PROPERTY NAME=\"Count\" TYPE=\"uint32\" CLASSORIGIN=\"TEST_Fan\">"))
        << text;
    EXPECT_TRUE(has(text, "<QUALIFIER NAME=\"MaxValue\" TYPE=\"sint64\" PROPAGATED=\"true\">"))
        << text;
    EXPECT_TRUE(has(text, "<PROPERTY NAME=\"Running\" TYPE=\"boolean\" CLASSORIGIN=\"TEST_Fan\">"))
        << text;
    EXPECT_TRUE(has(text,
                    "<METHOD NAME=\"Reset\" TYPE=\"uint32\" CLASSORIGIN=\"TEST_Element\" "
                    "PROPAGATED=\"true\">"))
        << text;
    // Restricted qualifiers stay with the class that has them.
    EXPECT_FALSE(has(text, "Deprecated"));
    EXPECT_FALSE(has(text, "Abstract"));
}

TEST_F(ClassWriterTest, LeavesOutQualifiersOnRequest) {
    ClassOptions options;
    options.includeQualifiers = false;
    for (const char* const name : {"TEST_Element", "TEST_Fan", "TEST_Link", "TEST_Values"}) {
        EXPECT_FALSE(has(classText(name, options), "QUALIFIER")) << name;
    }
}

TEST_F(ClassWriterTest, WritesOnlyTheListedProperties) {
    ClassOptions options;
    options.propertyList = std::vector<std::string>{"RUNNING", "NoSuch", "Id"};
    const std::string text = classText("TEST_Fan", options);
    EXPECT_TRUE(has(text, "NAME=\"Running\""));
    EXPECT_FALSE(has(text, "NAME=\"Speeds\""));
    EXPECT_FALSE(has(text, "NAME=\"Id\""));  // not local
    EXPECT_TRUE(has(text, "<METHOD "));
    options.propertyList = std::vector<std::string>{};
    EXPECT_FALSE(has(classText("TEST_Fan", options), "<PROPERTY"));
}

TEST_F(ClassWriterTest, WritesArraysReferencesAndEmbeddedObjects) {
    ClassOptions options;
    options.includeQualifiers = false;
    const std::string fan = classText("TEST_Fan", options);
    EXPECT_TRUE(has(fan, "<PROPERTY.ARRAY NAME=\"Speeds\" TYPE=\"uint16\"></PROPERTY.ARRAY>"))
        << fan;
    EXPECT_TRUE(has(fan,
                    "<PROPERTY.ARRAY NAME=\"Fixed\" TYPE=\"string\" ARRAYSIZE=\"4\"><VALUE.ARRAY>"
                    "<VALUE>a</VALUE><VALUE>b</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"))
        << fan;
    EXPECT_TRUE(
        has(fan, "<PROPERTY NAME=\"Settings\" TYPE=\"string\" EmbeddedObject=\"instance\">"))
        << fan;
    EXPECT_TRUE(has(fan, "<PROPERTY NAME=\"Anything\" TYPE=\"string\" EmbeddedObject=\"object\">"))
        << fan;
    EXPECT_TRUE(has(fan,
                    "<PARAMETER NAME=\"Speed\" TYPE=\"uint16\"></PARAMETER>"
                    "<PARAMETER.ARRAY NAME=\"Names\" TYPE=\"string\"></PARAMETER.ARRAY>"
                    "<PARAMETER.REFERENCE NAME=\"Near\" REFERENCECLASS=\"TEST_Element\">"
                    "</PARAMETER.REFERENCE>"
                    "<PARAMETER.REFARRAY NAME=\"All\" REFERENCECLASS=\"TEST_Element\">"
                    "</PARAMETER.REFARRAY>"
                    "<PARAMETER NAME=\"Settings\" TYPE=\"string\"></PARAMETER>"))
        << fan;
    EXPECT_TRUE(has(classText("TEST_Link", options),
                    "<PROPERTY.REFERENCE NAME=\"Antecedent\" REFERENCECLASS=\"TEST_Element\">"
                    "</PROPERTY.REFERENCE>"));
}

TEST_F(ClassWriterTest, WritesMethodsWithoutResultWithoutType) {
    Class definition;
    definition.name = "C";
    MethodDefinition method;
    method.name = "Touch";
    definition.methods.push_back(std::make_shared<const MethodDefinition>(method));
    EXPECT_EQ(written(definition), "<CLASS NAME=\"C\"><METHOD NAME=\"Touch\"></METHOD></CLASS>");
}

TEST_F(ClassWriterTest, WritesQualifierDeclarations) {
    EXPECT_EQ(written(*nameSpace().findQualifier("Key")),
              "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\">"
              "<SCOPE REFERENCE=\"true\" PROPERTY=\"true\"></SCOPE><VALUE>false</VALUE>"
              "</QUALIFIER.DECLARATION>");
    EXPECT_EQ(
        written(*nameSpace().findQualifier("Description")),
        "<QUALIFIER.DECLARATION NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\">"
        "<SCOPE CLASS=\"true\" ASSOCIATION=\"true\" REFERENCE=\"true\" PROPERTY=\"true\" "
        "METHOD=\"true\" PARAMETER=\"true\" INDICATION=\"true\"></SCOPE></QUALIFIER.DECLARATION>");
    EXPECT_EQ(written(*nameSpace().findQualifier("ValueMap")),
              "<QUALIFIER.DECLARATION NAME=\"ValueMap\" TYPE=\"string\" ISARRAY=\"true\">"
              "<SCOPE PROPERTY=\"true\" METHOD=\"true\" PARAMETER=\"true\"></SCOPE>"
              "</QUALIFIER.DECLARATION>");
    QualifierDeclaration fixed;
    fixed.name = "Q";
    fixed.type = CimType::uint8;
    fixed.isArray = true;
    fixed.arraySize = 2;
    fixed.defaultValue = Value::array(CimType::uint8, {Value::unsignedInteger(CimType::uint8, 1)});
    fixed.flavor = {false, false, false};
    EXPECT_EQ(
        written(fixed),
        "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"uint8\" ISARRAY=\"true\" ARRAYSIZE=\"2\" "
        "OVERRIDABLE=\"false\" TOSUBCLASS=\"false\"><SCOPE></SCOPE><VALUE.ARRAY><VALUE>1</VALUE>"
        "</VALUE.ARRAY></QUALIFIER.DECLARATION>");
}

}  // namespace
}  // namespace cimhost
