#include "cimhost/repository/ElementResolver.h"

#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

constexpr const char* base =
    "class T_Base { [Key, Description(\"the id\")] string ID; [Description(\"speed\")] uint64 "
    "Speed = 5;"
    " string Text; uint8 List[];"
    " [Description(\"go\")] uint32 Go([In(false), Out, Description(\"how far\")] uint32 Far); };"
    "class T_Near : T_Base {};"
    "[Association] class T_Link { T_Base REF Left; T_Near REF Right; };\n";

class ElementResolver : public testing::Test {
protected:
    ElementResolver() { _mof.read(base); }
    MofText _mof;
};

TEST_F(ElementResolver, AnOverrideKeepsWhatItDoesNotSay) {
    _mof.read("class T_Sub : T_Base { [Override(\"Speed\")] uint64 Speed; };");
    const PropertyDefinition& speed = _mof.property("T_Sub", "Speed");
    EXPECT_EQ(speed.defaultValue, Value::unsignedInteger(CimType::uint64, 5));
    EXPECT_EQ(speed.classOrigin, "T_Sub");
    const Qualifier* const description = findQualifier(speed.qualifiers, "Description");
    ASSERT_NE(description, nullptr);
    EXPECT_EQ(description->value, Value::string("speed"));
    EXPECT_TRUE(description->propagated);
}

TEST_F(ElementResolver, AnOverrideChangesWhatItSays) {
    _mof.read("class T_Sub : T_Base { [Override, Description(\"new\")] uint64 Speed = 7; };");
    const PropertyDefinition& speed = _mof.property("T_Sub", "Speed");
    EXPECT_EQ(speed.defaultValue, Value::unsignedInteger(CimType::uint64, 7));
    EXPECT_EQ(findQualifier(speed.qualifiers, "Description")->value, Value::string("new"));
    EXPECT_EQ(_mof.property("T_Base", "Speed").defaultValue,
              Value::unsignedInteger(CimType::uint64, 5));
}

TEST_F(ElementResolver, ARedeclarationIsAnOverrideWithoutSayingSo) {
    _mof.read("class T_Sub : T_Base { string id; };");
    EXPECT_TRUE(_mof.property("T_Sub", "ID").isKey);
    EXPECT_EQ(_mof.classOf("T_Sub").properties.size(), 4U);
}

TEST_F(ElementResolver, TheOverrideQualifierDoesNotTravel) {
    _mof.read(
        "class T_Sub : T_Base { [Override(\"Speed\")] uint64 Speed; };"
        "class T_SubSub : T_Sub { uint64 Speed; };");
    EXPECT_EQ(findQualifier(_mof.property("T_SubSub", "Speed").qualifiers, "Override"), nullptr);
}

TEST_F(ElementResolver, AnOverrideOfAStringMayEmbedAnInstance) {
    _mof.read(
        "class T_Sub : T_Base { [Override(\"Text\"), EmbeddedInstance(\"T_Base\")] string Text; };"
        "class T_SubSub : T_Sub { [Override(\"Text\")] string Text; };");
    EXPECT_EQ(_mof.property("T_SubSub", "Text").type, CimType::instance);
    EXPECT_EQ(_mof.property("T_SubSub", "Text").referenceClass, "T_Base");
}

TEST_F(ElementResolver, AReferenceMayBeNarrowed) {
    _mof.read("[Association] class T_Sub : T_Link { [Override(\"Left\")] T_Near REF Left; };");
    EXPECT_EQ(_mof.property("T_Sub", "Left").referenceClass, "T_Near");
    _mof.read("[Association] class T_Late : T_Link { [Override(\"Left\")] T_NotYet REF Left; };");
}

TEST_F(ElementResolver, MethodsInheritQualifiersOfTheirOwnAndOfTheirParameters) {
    _mof.read("class T_Sub : T_Base { [Override(\"Go\")] uint32 Go(uint32 FAR, string More); };");
    const MethodDefinition& go = _mof.method("T_Sub", "Go");
    EXPECT_EQ(findQualifier(go.qualifiers, "Description")->value, Value::string("go"));
    EXPECT_TRUE(go.parameters[0].isOut);
    EXPECT_FALSE(go.parameters[0].isIn);
    EXPECT_TRUE(go.parameters[1].isIn);
    EXPECT_EQ(go.classOrigin, "T_Sub");
}

struct ResolverErrorRow {
    const char* text;
    const char* message;
};

constexpr ResolverErrorRow resolverErrorRows[] = {
    {"class C : T_Base { [Override(\"Speed\")] uint32 Speed; };",
     "t.mof:1:7: property 'Speed' of 'C': is uint32 but uint64 in the superclass"},
    {"class C : T_Base { uint64 Speed[]; };",
     "t.mof:1:7: property 'Speed' of 'C': is uint64[] but uint64 in the superclass"},
    {"class C : T_Base { [Override(\"Text\")] uint64 Speed; };",
     "t.mof:1:7: property 'Speed' of 'C': overrides 'Text', which has another name"},
    {"class C : T_Base { [Override(\"New\")] uint64 New; };",
     "t.mof:1:7: property 'New' of 'C': overrides nothing: the superclass has no such element"},
    {"class C { [Override] uint64 New; };",
     "t.mof:1:7: property 'New' of 'C': overrides nothing: the superclass has no such element"},
    {"class C : T_Base { [Key(false)] string ID; };",
     "t.mof:1:7: property 'ID' of 'C': qualifier 'Key' must not be overridden"},
    {"[Association] class C : T_Link { T_Base REF Right; };",
     "t.mof:1:21: reference 'Right' of 'C': refers to 'T_Base', which is no subclass of 'T_Near'"},
    {"class C : T_Base { string Go(); };",
     "t.mof:1:7: method 'Go' of 'C': returns string but uint32 in the superclass"},
    {"class C : T_Base { uint32 Go(string Far); };",
     "t.mof:1:7: parameter 'Far' of method 'Go' of 'C': is string but uint32 in the superclass"},
    {"class C : T_Base { [EmbeddedObject] string ID; };",
     "t.mof:1:7: property 'ID' of 'C': an embedded object cannot be a key"},
};

TEST_F(ElementResolver, SaysWhichRuleAnOverrideBreaks) {
    for (const ResolverErrorRow& row : resolverErrorRows) {
        EXPECT_EQ(_mof.errorOf(row.text), row.message) << row.text;
    }
}

}  // namespace
}  // namespace cimhost
