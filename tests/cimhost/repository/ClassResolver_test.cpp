#include "cimhost/repository/ClassResolver.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

TEST(ClassResolver, InheritedMembersComeFirstAndInOrder) {
    MofText mof;
    mof.read(
        "class A { uint8 One; uint8 Two; uint8 F(); };"
        "class B : a { uint8 Three; [Override(\"One\")] uint8 One; uint8 G(); };");
    const Class& b = mof.classOf("B");
    EXPECT_EQ(b.superClass, "A");
    ASSERT_EQ(b.properties.size(), 3U);
    EXPECT_EQ(b.properties[0]->name, "One");
    EXPECT_EQ(b.properties[0]->classOrigin, "B");
    EXPECT_EQ(b.properties[1]->name, "Two");
    EXPECT_EQ(b.properties[1]->classOrigin, "A");
    EXPECT_EQ(b.properties[2]->name, "Three");
    ASSERT_EQ(b.methods.size(), 2U);
    EXPECT_EQ(b.methods[0]->name, "F");
}

TEST(ClassResolver, WhatIsNotOverriddenIsShared) {
    MofText mof;
    mof.read("class A { uint8 One; uint8 F(); }; class B : A {};");
    EXPECT_EQ(mof.classOf("A").properties[0], mof.classOf("B").properties[0]);
    EXPECT_EQ(mof.classOf("A").methods[0], mof.classOf("B").methods[0]);
}

TEST(ClassResolver, AssociationAndIndicationAreInheritedButAbstractIsNot) {
    MofText mof;
    mof.read(
        "[Association, Abstract] class A { A REF X; A REF Y; }; class B : A {};"
        "[Indication, Abstract] class I {}; class J : I {};");
    EXPECT_TRUE(mof.classOf("A").isAbstract);
    EXPECT_TRUE(mof.classOf("B").isAssociation);
    EXPECT_FALSE(mof.classOf("B").isAbstract);
    EXPECT_TRUE(mof.classOf("J").isIndication);
    EXPECT_FALSE(mof.classOf("J").isAbstract);
}

TEST(ClassResolver, ClassQualifiersTravelByTheirFlavor) {
    MofText mof;
    mof.read(
        "[Description(\"d\"), Version(\"1\")] class A {}; class B : A {};"
        "[Description(\"e\"): Restricted] class C : B {}; class D : C {};");
    const Qualifiers& b = mof.classOf("B").qualifiers;
    ASSERT_EQ(b.size(), 1U);
    EXPECT_TRUE(b[0].propagated);
    EXPECT_TRUE(mof.classOf("D").qualifiers.empty());
}

TEST(ClassResolver, ASubclassMayMakeKeysWhereThereAreNone) {
    MofText mof;
    mof.read(
        "class A { string ID; }; class B : A { [Key, Override(\"ID\")] string ID; };"
        "class C : B { string More; }; class D : A { [Key] string Other; };");
    EXPECT_FALSE(mof.classOf("A").hasKeys());
    EXPECT_TRUE(mof.property("C", "ID").isKey);
    EXPECT_TRUE(mof.property("D", "Other").isKey);
}

TEST(ClassResolver, ASubclassCannotAddToKeysThatThereAre) {
    MofText mof;
    mof.read("class A { [Key] string ID; string Text; };");
    EXPECT_EQ(mof.errorOf("class B : A { [Key] string More; };"),
              "t.mof:1:7: class 'B' adds the key 'More' to the keys of 'A'");
    EXPECT_EQ(mof.errorOf("class B : A { [Key, Override(\"Text\")] string Text; };"),
              "t.mof:1:7: class 'B' adds the key 'Text' to the keys of 'A'");
}

TEST(ClassResolver, AnAssociationDescendsOnlyFromAssociations) {
    MofText mof;
    mof.read("class A {};");
    EXPECT_EQ(mof.errorOf("[Association] class B : A { A REF X; A REF Y; };"),
              "t.mof:1:21: association 'B' has the superclass 'A', which is no association");
    EXPECT_EQ(mof.errorOf("[Association, Indication] class B { A REF X; A REF Y; };"),
              "t.mof:1:33: class 'B' cannot be an association and an indication");
}

TEST(ClassResolver, AnAbstractAssociationMayLackReferences) {
    MofText mof;
    mof.read("[Association, Abstract] class A {};");
    EXPECT_EQ(mof.errorOf("class B : A { A REF X; };"),
              "t.mof:1:7: association 'B' needs two references");
    mof.read("class C : A { A REF X; A REF Y; };");
    EXPECT_TRUE(mof.classOf("C").isAssociation);
}

TEST(ClassResolver, ResolvesDefinitionsThatNoMofWrote) {
    NameSpace nameSpace("root/test");
    Class definition;
    definition.name = "C";
    PropertyDefinition property;
    property.name = "P";
    property.type = CimType::uint8;
    definition.properties = {std::make_shared<PropertyDefinition>(property),
                             std::make_shared<PropertyDefinition>(property)};
    try {
        nameSpace.addClass(definition);
        FAIL();
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::invalidParameter);
        EXPECT_STREQ(error.what(), "property 'P' of 'C' is declared twice");
    }
    definition.properties.pop_back();
    EXPECT_EQ(nameSpace.addClass(definition).properties[0]->classOrigin, "C");
}

}  // namespace
}  // namespace cimhost
