#include "cimhost/cimxml/ClassReader.h"

#include "cimhost/cimxml/WrittenModel.h"
#include "cimhost/repository/CimError.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <string>

namespace cimhost {
namespace {

Class classOf(const std::string& inside) {
    const std::string text = "<CLASS NAME=\"TEST_Fan\">" + inside + "</CLASS>";
    const XmlDocument document(text, {Tag::classDefinition});
    return readClass(document.root(), WrittenModel("root/test").reader());
}

std::string failureOf(const std::string& inside) {
    return errorOf([&] { classOf(inside); });
}

TEST(ClassReader, ReadsNoMoreThanIsWritten) {
    const Class definition = classOf("<PROPERTY NAME=\"Id\" TYPE=\"string\"/>");
    EXPECT_EQ(definition.name, "TEST_Fan");
    EXPECT_EQ(definition.superClass, "");
    EXPECT_TRUE(definition.qualifiers.empty());
    ASSERT_EQ(definition.properties.size(), 1U);
    EXPECT_EQ(definition.properties[0]->type, CimType::string);
    EXPECT_TRUE(definition.properties[0]->defaultValue.isNull());
    EXPECT_FALSE(definition.properties[0]->isKey);
    EXPECT_EQ(definition.properties[0]->classOrigin, "");
}

TEST(ClassReader, HearsOfEmbeddedInstancesByAttributeOrQualifier) {
    const std::string property = "<PROPERTY NAME=\"P\" TYPE=\"string\"";
    const auto read = [](const std::string& text) { return *classOf(text).properties[0]; };
    const PropertyDefinition object = read(property + " EmbeddedObject=\"object\"/>");
    EXPECT_EQ(object.type, CimType::instance);
    EXPECT_TRUE(object.isEmbeddedObject);
    const PropertyDefinition instance =
        read(property +
             "><QUALIFIER NAME=\"embeddedinstance\" TYPE=\"string\"><VALUE>TEST_Settings</VALUE>"
             "</QUALIFIER></PROPERTY>");
    EXPECT_EQ(instance.type, CimType::instance);
    EXPECT_EQ(instance.referenceClass, "TEST_Settings");
    EXPECT_FALSE(instance.isEmbeddedObject);
}

TEST(ClassReader, RefusesBrokenDefinitions) {
    EXPECT_EQ(failureOf("<PROPERTY NAME=\"A\" TYPE=\"string\"/><PROPERTY NAME=\"a\" "
                        "TYPE=\"uint8\"/>"),
              "4: class TEST_Fan has a twice");
    EXPECT_EQ(failureOf("<METHOD NAME=\"M\" TYPE=\"uint8\"/><METHOD NAME=\"m\" TYPE=\"uint8\"/>"),
              "4: class TEST_Fan has m twice");
    EXPECT_EQ(failureOf("<PROPERTY NAME=\"A\" TYPE=\"uint24\"/>"),
              "4: property A of TEST_Fan has the unknown type \"uint24\"");
    EXPECT_EQ(failureOf("<METHOD NAME=\"M\" TYPE=\"\"/>"),
              "4: method M of TEST_Fan has the unknown type \"\"");
    EXPECT_EQ(failureOf("<PROPERTY NAME=\"A\" TYPE=\"uint8\"><VALUE>256</VALUE></PROPERTY>"),
              "13: property A of TEST_Fan: \"256\" is no value of type uint8");
    EXPECT_EQ(failureOf("<QUALIFIER NAME=\"Q\" TYPE=\"boolean\"><VALUE>maybe</VALUE></QUALIFIER>"),
              "13: qualifier Q of TEST_Fan: \"maybe\" is no value of type boolean");
    for (const char* size : {"-1", "4294967296", "two", "2 "}) {
        EXPECT_EQ(failureOf("<PROPERTY.ARRAY NAME=\"A\" TYPE=\"uint8\" ARRAYSIZE=\"" +
                            std::string(size) + "\"/>"),
                  "4: A has the array size \"" + std::string(size) + "\"");
    }
}

}  // namespace
}  // namespace cimhost
