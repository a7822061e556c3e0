#include "cimhost/repository/NameSpace.h"

#include "cimhost/repository/CimError.h"
#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace cimhost {
namespace {

using test::MofText;
using test::namesOf;

using Names = std::vector<std::string>;

class NameSpaceTest : public testing::Test {
protected:
    NameSpaceTest() {
        _mof.read("class A {}; class B : A {}; class C : B {}; class D : A {}; class Z {};");
    }
    NameSpace& nameSpace() { return _mof.nameSpace(); }
    MofText _mof;
};

TEST_F(NameSpaceTest, FindsClassesInAnyCase) {
    ASSERT_NE(nameSpace().findClass("a"), nullptr);
    EXPECT_EQ(nameSpace().findClass("a")->name, "A");
    EXPECT_EQ(nameSpace().findClass("E"), nullptr);
    EXPECT_EQ(nameSpace().findClass(""), nullptr);
    EXPECT_EQ(nameSpace().classCount(), 5U);
}

TEST_F(NameSpaceTest, KnowsWhatDescendsFromWhat) {
    EXPECT_TRUE(nameSpace().isA("c", "A"));
    EXPECT_TRUE(nameSpace().isA("A", "a"));
    EXPECT_FALSE(nameSpace().isA("A", "B"));
    EXPECT_FALSE(nameSpace().isA("Z", "A"));
    EXPECT_FALSE(nameSpace().isA("Nope", "Nope"));
}

TEST_F(NameSpaceTest, ListsSubclassesInOrderOfDefinition) {
    EXPECT_EQ(namesOf(nameSpace().subclasses("a")), (Names{"B", "D"}));
    EXPECT_EQ(namesOf(nameSpace().subclasses("")), (Names{"A", "Z"}));
    EXPECT_TRUE(nameSpace().subclasses("C").empty());
    EXPECT_TRUE(nameSpace().subclasses("Nope").empty());
}

TEST_F(NameSpaceTest, ListsDescendantsDepthFirst) {
    EXPECT_EQ(namesOf(nameSpace().withDescendants("A")), (Names{"A", "B", "C", "D"}));
    EXPECT_EQ(namesOf(nameSpace().withDescendants("z")), (Names{"Z"}));
    EXPECT_TRUE(nameSpace().withDescendants("Nope").empty());
    EXPECT_TRUE(nameSpace().withDescendants("").empty());
}

TEST_F(NameSpaceTest, ListsQualifiersInOrderOfName) {
    const auto qualifiers = nameSpace().qualifiers();
    EXPECT_EQ(qualifiers.size(), 13U);
    EXPECT_TRUE(std::is_sorted(qualifiers.begin(), qualifiers.end(), [](auto* left, auto* right) {
        return NameLess{}(left->name, right->name);
    }));
}

TEST_F(NameSpaceTest, ListsAssociations) {
    EXPECT_TRUE(nameSpace().associations().empty());
    _mof.read("[Association] class L { A REF X; A REF Y; }; class M : L {};");
    EXPECT_EQ(namesOf(nameSpace().associations()), (Names{"L", "M"}));
}

TEST_F(NameSpaceTest, RefusesAClassTwiceOrWithoutItsSuperclass) {
    Class definition;
    definition.name = "a";
    const auto code = [&] {
        try {
            nameSpace().addClass(definition);
        } catch (const CimError& error) {
            return error.code();
        }
        return CimCode{};
    };
    EXPECT_EQ(code(), CimCode::alreadyExists);
    definition.name = "New";
    definition.superClass = "Nope";
    EXPECT_EQ(code(), CimCode::invalidSuperclass);
    EXPECT_EQ(nameSpace().classCount(), 5U);
    EXPECT_EQ(nameSpace().subclasses("").size(), 2U);
}

TEST_F(NameSpaceTest, FindsStaticInstancesByModelPath) {
    _mof.read(
        "class K { [Key] uint16 N; string Text; };"
        "instance of K { N = 1; Text = \"one\"; }; instance of K { N = 2; };");
    ObjectPath path{"host", "elsewhere", "k", {{"n", Value::unsignedInteger(CimType::uint64, 1)}}};
    const Instance* const found = nameSpace().findInstance(path);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->find("Text")->value, Value::string("one"));
    path.keys[0].value = Value::unsignedInteger(CimType::uint64, 3);
    EXPECT_EQ(nameSpace().findInstance(path), nullptr);
    EXPECT_EQ(nameSpace().instances().size(), 2U);
}

TEST_F(NameSpaceTest, RefusesAnInstanceTwice) {
    _mof.read("class K { [Key] uint16 N; }; instance of K { N = 1; };");
    Instance instance;
    instance.path.className = "K";
    instance.set("n", Value::unsignedInteger(CimType::uint8, 1));
    try {
        nameSpace().addInstance(instance);
        FAIL();
    } catch (const CimError& error) {
        EXPECT_EQ(error.code(), CimCode::alreadyExists);
        EXPECT_STREQ(error.what(), "an instance of 'K' with these keys is there already");
    }
    EXPECT_EQ(nameSpace().instances().size(), 1U);
}

}  // namespace
}  // namespace cimhost
