#include "cimhost/mof/MofClassParser.h"

#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

TEST(MofClassParser, ReadsAClassWithEveryKindOfMember) {
    MofText mof;
    mof.read(
        "class Base {};"
        "[Description(\"a class\")] CLASS T_Fan as $fan : base {\n"
        "  [Key, MaxLen(64)] string DeviceID;\n"
        "  UINT64 Speed = 5;\n"
        "  datetime Times[4];\n"
        "  [Description(\"go\")] uint32 SetSpeed([In] uint64 Speed, [In(false), Out] string "
        "Text[],\n"
        "      T_Sensor REF Sensor, T_Sensor REF More[]);\n"
        "  boolean Reset();\n"
        "};");
    const Class& fan = mof.classOf("t_fan");
    EXPECT_EQ(fan.name, "T_Fan");
    EXPECT_EQ(fan.superClass, "Base");
    ASSERT_EQ(fan.properties.size(), 3U);
    EXPECT_TRUE(fan.properties[0]->isKey);
    EXPECT_EQ(fan.properties[1]->type, CimType::uint64);
    EXPECT_EQ(fan.properties[2]->arraySize, 4U);
    const MethodDefinition& method = mof.method("T_Fan", "SetSpeed");
    EXPECT_EQ(method.returnType, CimType::uint32);
    ASSERT_EQ(method.parameters.size(), 4U);
    EXPECT_TRUE(method.parameters[0].isIn);
    EXPECT_FALSE(method.parameters[0].isOut);
    EXPECT_FALSE(method.parameters[1].isIn);
    EXPECT_TRUE(method.parameters[1].isOut);
    EXPECT_TRUE(method.parameters[1].isArray);
    EXPECT_EQ(method.parameters[2].type, CimType::reference);
    EXPECT_EQ(method.parameters[2].referenceClass, "T_Sensor");
    EXPECT_TRUE(method.parameters[3].isArray);
    EXPECT_EQ(mof.method("T_Fan", "Reset").returnType, CimType::boolean);
}

TEST(MofClassParser, ReadsAssociationsWithReferencesToLaterClasses) {
    MofText mof;
    mof.read(
        "[Association] class T_Link { [Key] T_Left REF Left; [Key] T_Right ref Right = null; };"
        "class T_Left {}; class T_Right {};");
    EXPECT_TRUE(mof.classOf("T_Link").isAssociation);
    EXPECT_EQ(mof.property("T_Link", "Left").type, CimType::reference);
    EXPECT_EQ(mof.property("T_Link", "Left").referenceClass, "T_Left");
}

TEST(MofClassParser, ReadsTheDefaultOfAReference) {
    MofText mof;
    mof.read("[Association] class T_Link { T_A REF A = \"T_A.K=1\"; T_A REF B; };");
    const auto* const path =
        mof.property("T_Link", "A").defaultValue.get<std::shared_ptr<const ObjectPath>>();
    ASSERT_NE(path, nullptr);
    EXPECT_EQ((*path)->className, "T_A");
    EXPECT_EQ(mof.errorOf("[Association] class M { T_A REF A = \"T_A.\"; T_A REF B; };"),
              "t.mof:1:37: not an object path: expected a key name at character 5");
}

TEST(MofClassParser, ReadsIndications) {
    MofText mof;
    mof.read("[Indication, Abstract] class T_Event { string Text; };");
    EXPECT_TRUE(mof.classOf("T_Event").isIndication);
    EXPECT_TRUE(mof.classOf("T_Event").isAbstract);
}

TEST(MofClassParser, KeywordsAndTypesMayBeNames) {
    MofText mof;
    mof.read(
        "class class { string String; uint8 Ref; uint8 Class; uint8 Instance(string As); };"
        "class Qualifier { uint8 pragma; }; class instance {};");
    EXPECT_EQ(mof.classOf("class").properties.size(), 3U);
    EXPECT_EQ(mof.method("class", "instance").parameters[0].name, "As");
    EXPECT_EQ(mof.classOf("QUALIFIER").properties.size(), 1U);
}

TEST(MofClassParser, APropertyAndAMethodMayShareAName) {
    MofText mof;
    mof.read("class C { uint8 Speed; uint8 Speed(); };");
    EXPECT_EQ(mof.classOf("C").properties.size(), 1U);
    EXPECT_EQ(mof.classOf("C").methods.size(), 1U);
}

TEST(MofClassParser, NamesMayHoldCharactersBeyondAscii) {
    MofText mof;
    mof.read(
        "class T_L\xC3\xBC"
        "fter { uint8 \xE2\x82\xAC; };");
    EXPECT_EQ(mof.property("T_L\xC3\xBC"
                           "fter",
                           "\xE2\x82\xAC")
                  .name,
              "\xE2\x82\xAC");
    EXPECT_EQ(mof.errorOf("class A\xFF {};"), "t.mof:1:8: the text is not UTF-8");
}

TEST(MofClassParser, StringsWithEmbeddedQualifiersAreInstances) {
    MofText mof;
    mof.read(
        "class C { [EmbeddedInstance(\"T_Later\")] string One; [EmbeddedObject] string Any[];\n"
        "[EmbeddedObject(false)] string Text;\n"
        "[EmbeddedInstance(\"C\")] string Make([EmbeddedObject] string In); };");
    EXPECT_EQ(mof.property("C", "One").type, CimType::instance);
    EXPECT_EQ(mof.property("C", "One").referenceClass, "T_Later");
    EXPECT_FALSE(mof.property("C", "One").isEmbeddedObject);
    EXPECT_EQ(mof.property("C", "Any").type, CimType::instance);
    EXPECT_TRUE(mof.property("C", "Any").isEmbeddedObject);
    EXPECT_TRUE(mof.property("C", "Any").isArray);
    EXPECT_EQ(mof.property("C", "Text").type, CimType::string);
    EXPECT_EQ(mof.method("C", "Make").returnType, CimType::instance);
    EXPECT_EQ(mof.method("C", "Make").returnEmbeddedClass, "C");
    EXPECT_TRUE(mof.method("C", "Make").parameters[0].isEmbeddedObject);
}

struct ClassErrorRow {
    const char* text;
    const char* message;
};

constexpr ClassErrorRow classErrorRows[] = {
    {"class {};", "t.mof:1:7: expected the name of the class, found '{'"},
    {"class 5 {};", "t.mof:1:7: expected the name of the class, found '5'"},
    {"class C as x {};", "t.mof:1:12: expected an alias after 'as', found 'x'"},
    {"class C : {};", "t.mof:1:11: expected the name of the superclass, found '{'"},
    {"class C : Nope {};", "t.mof:1:11: superclass 'Nope' is not known"},
    {"class C : C {};", "t.mof:1:11: superclass 'C' is not known"},
    {"class C uint8", "t.mof:1:9: expected '{' before the body of the class, found 'uint8'"},
    {"class C {", "t.mof:1:10: expected '}' after the class, found the end of the file"},
    {"class C {}", "t.mof:1:11: expected ';' after the class, found the end of the file"},
    {"class C {\n  uint8 A\n  uint32 B;\n};",
     "t.mof:3:3: expected ';' after the property, found 'uint32'"},
    {"class C { uint8; };", "t.mof:1:16: expected the name of a property or method, found ';'"},
    {"class C { \"x\"; };", "t.mof:1:11: expected a type, found a string"},
    {"class C { int A; };",
     "t.mof:1:15: expected 'ref' after 'int', which is not a type, found 'A'"},
    {"class C { reference A; };",
     "t.mof:1:21: expected 'ref' after 'reference', which is not a type, found 'A'"},
    {"class C { uint8 A; uint8 a; };", "t.mof:1:26: property 'a' of 'C' is declared twice"},
    {"class C { uint8 A(); uint8 a(); };", "t.mof:1:28: method 'a' of 'C' is declared twice"},
    {"class C { uint8 A(uint8 B, uint8 b); };",
     "t.mof:1:34: parameter 'b' of method 'A' of 'C' is declared twice"},
    {"class C { uint8 A(uint8 B; };",
     "t.mof:1:26: expected ')' or ',' after the parameter, found ';'"},
    {"class C { uint8 A(uint8); };", "t.mof:1:24: expected the name of a parameter, found ')'"},
    {"class C { uint8 A(,); };", "t.mof:1:19: expected a type, found ','"},
    {"class C { uint8 A() uint8 B; };", "t.mof:1:21: expected ';' after the method, found 'uint8'"},
    {"class C { D REF A(); };", "t.mof:1:17: method 'A' of 'C' cannot return a reference"},
    {"class C { D REF A; };",
     "t.mof:1:7: reference 'A' of 'C': only an association has references"},
    {"[Association] class C { D REF A[]; D REF B; };",
     "t.mof:1:32: expected ';' after the reference, found '['"},
    {"[Association] class C { D REF A; };", "t.mof:1:21: association 'C' needs two references"},
    {"class C { [Key] uint8 A[]; };", "t.mof:1:7: property 'A' of 'C': an array cannot be a key"},
    {"class C { [Key, EmbeddedObject] string A; };",
     "t.mof:1:7: property 'A' of 'C': an embedded object cannot be a key"},
    {"class C { [EmbeddedObject] string A = \"x\"; };",
     "t.mof:1:7: property 'A' of 'C': an embedded object has no default value but NULL"},
    {"class C { uint8 A; }; class c {};", "t.mof:1:29: class 'c' is defined already"},
};

TEST(MofClassParser, SaysWhereAndWhatItExpected) {
    for (const ClassErrorRow& row : classErrorRows) {
        MofText mof;
        EXPECT_EQ(mof.errorOf(row.text), row.message) << row.text;
    }
}

TEST(MofClassParser, ABrokenClassLeavesThoseBeforeIt) {
    MofText mof;
    EXPECT_NE(mof.errorOf("class A {}; class B { oops };"), "");
    EXPECT_NE(mof.nameSpace().findClass("A"), nullptr);
    EXPECT_EQ(mof.nameSpace().findClass("B"), nullptr);
}

}  // namespace
}  // namespace cimhost
