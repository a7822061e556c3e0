#include "cimhost/mof/MofInstances.h"

#include "tests/cimhost/mof/MofText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

class MofInstancesTest : public testing::Test {
protected:
    MofInstancesTest() {
        _mof.read(
            "class T_Fan { [Key] string ID = \"default\"; string Text; };"
            "class T_Sensor { [Key] string ID; };"
            "[Association] class T_Link { [Key] T_Fan REF Left; [Key] T_Fan REF Right; };"
            "[Association] class T_Chain { [Key] T_Chain REF Next; [Key] T_Chain REF Other; };"
            "class T_Box { [Key] string ID; [EmbeddedInstance(\"T_Fan\")] string One;"
            " [EmbeddedObject] string Any[]; };");
    }

    const ObjectPath& reference(const Instance& instance, const char* name) {
        return **instance.find(name)->value.get<std::shared_ptr<const ObjectPath>>();
    }
    const Instance& last() { return _mof.nameSpace().instances().back(); }
    MofText _mof;
};

TEST_F(MofInstancesTest, AnAliasIsUsedBeforeOrAfterItIsMade) {
    _mof.read(
        "instance of T_Fan as $before { ID = \"1\"; };"
        "instance of T_Link { Left = $BEFORE; Right = $after; };"
        "instance of T_Fan as $after { ID = \"2\"; };");
    const Instance& link = _mof.nameSpace().instances()[1];
    EXPECT_EQ(*reference(link, "Left").findKey("ID"), Value::string("1"));
    EXPECT_EQ(*reference(link, "Right").findKey("ID"), Value::string("2"));
    EXPECT_EQ(*link.path.findKey("Left"), link.find("Left")->value);
}

TEST_F(MofInstancesTest, AnAliasMayLeadToADefaultKey) {
    _mof.read("instance of T_Fan as $a {}; instance of T_Link { Left = $a; Right = $a; };");
    EXPECT_EQ(*reference(last(), "Left").findKey("ID"), Value::string("default"));
}

TEST_F(MofInstancesTest, AnAliasIntoAnotherNamespaceCarriesIt) {
    _mof.repository().make("other");
    _mof.read("instance of T_Fan as $here { ID = \"1\"; };\n#pragma namespace(\"other\")\n" +
              test::qualifiers +
              "class T_Far { [Key] string ID; };"
              "[Association] class T_Cross { [Key] T_Far REF Near; [Key] T_Fan REF Far; };"
              "instance of T_Far as $there { ID = \"2\"; };"
              "instance of T_Cross { Near = $there; Far = $here; };");
    const Instance& cross = _mof.repository().get("other").instances().back();
    EXPECT_EQ(reference(cross, "Far").nameSpace, "root/test");
    EXPECT_EQ(reference(cross, "Near").nameSpace, "");
}

TEST_F(MofInstancesTest, ReferencesMayBePathsAsText) {
    _mof.read(
        "instance of T_Link { Left = \"root/x:T_Fan.ID=\\\"1\\\"\"; Right = "
        "\"t_fan.id=\\\"2\\\"\"; };");
    EXPECT_EQ(reference(last(), "Left").nameSpace, "root/x");
    EXPECT_EQ(reference(last(), "Right").className, "T_Fan");
}

TEST_F(MofInstancesTest, EmbeddedInstancesAreStringsOfMof) {
    _mof.read(R"(instance of T_Box { ID = "b"; One = "instance of t_fan { Text = \"a\"; };";
        Any = {"instance of T_Sensor { ID = \"s\"; };", null}; };)");
    const auto& one = **last().find("One")->value.get<std::shared_ptr<const Instance>>();
    EXPECT_EQ(one.className(), "T_Fan");
    EXPECT_EQ(one.find("Text")->value, Value::string("a"));
    EXPECT_EQ(one.find("ID")->value, Value::string("default"));
    const auto& any = *last().find("Any")->value.get<Value::Array>();
    EXPECT_EQ((*any[0].get<std::shared_ptr<const Instance>>())->className(), "T_Sensor");
    EXPECT_TRUE(any[1].isNull());
}

TEST_F(MofInstancesTest, SaysWhatIsWrongWithAnAlias) {
    EXPECT_EQ(_mof.errorOf("instance of T_Link { Left = $nope; Right = $nope; };"),
              "t.mof:1:29: the alias '$nope' is not defined");
    EXPECT_EQ(_mof.errorOf("instance of T_Fan as $a { ID = \"1\"; };\n"
                           "instance of T_Fan as $A { ID = \"2\"; };"),
              "t.mof:2:22: the alias '$A' is used already");
    EXPECT_EQ(_mof.errorOf("instance of T_Fan as $a { ID = \"1\"; };"
                           "instance of T_Fan { ID = $a; };"),
              "t.mof:1:64: the alias '$a' stands for a reference, but 'ID' is none");
    EXPECT_EQ(_mof.errorOf("instance of T_Sensor as $s { ID = \"1\"; };\n"
                           "instance of T_Link { Left = $s; Right = $s; };"),
              "t.mof:2:29: $s is an instance of 'T_Sensor', not of 'T_Fan'");
    EXPECT_EQ(_mof.errorOf("instance of T_Chain as $c { Next = $c; Other = $c; };"),
              "t.mof:1:36: the alias '$c' leads back to itself by its keys");
    EXPECT_EQ(_mof.errorOf("instance of T_Chain as $a { Next = $b; Other = $b; };\n"
                           "instance of T_Chain as $b { Next = $a; Other = $a; };"),
              "t.mof:1:36: the alias '$b' leads back to itself by its keys");
    EXPECT_EQ(_mof.errorOf("instance of T_Chain as $a { Next = $b; Other = $b; };\n"
                           "instance of T_Chain as $b { Next = \"T_Chain\"; };"),
              "t.mof:2:13: the instance has no value for its key 'Other'");
}

TEST_F(MofInstancesTest, SaysWhatIsWrongWithAnEmbeddedInstance) {
    const auto refusal = [this](const std::string& value) {
        return _mof.errorOf("instance of T_Box { ID = \"b\"; One = " + value + "; };");
    };
    EXPECT_EQ(refusal("5"), "t.mof:1:37: expected an embedded instance as a string of MOF");
    EXPECT_EQ(refusal("\"\""),
              "t.mof:1:37: embedded instance:1:1: expected 'instance' at the start, "
              "found the end of the file");
    EXPECT_EQ(
        refusal("\"instance of T_Fan {\""),
        "t.mof:1:37: embedded instance:1:20: expected the name of a property or '}', found the "
        "end of the file");
    EXPECT_EQ(refusal("\"instance of T_Fan {}; x\""),
              "t.mof:1:37: embedded instance:1:23: expected nothing after the instance, found 'x'");
    EXPECT_EQ(
        refusal(R"("instance of T_Sensor { ID = \"1\"; };")"),
        "t.mof:1:37: embedded instance:1:13: this is an instance of 'T_Sensor', not of 'T_Fan'");
}

TEST_F(MofInstancesTest, ReferencesNestNoDeeperThanTheLimit) {
    const auto chain = [](int length) {
        std::string text;
        for (int i = 0; i < length; ++i) {
            const std::string next = std::to_string(i + 1);
            text += "instance of T_Nest as $n" + std::to_string(i) + " { Next = $n" + next +
                    "; Fan = $f; };\n";
        }
        return "instance of T_Fan as $f { ID = \"1\"; };\n" + text + "instance of T_Nest as $n" +
               std::to_string(length) + " { Next = \"T_Nest\"; Fan = $f; };";
    };
    _mof.read("[Association] class T_Nest { [Key] T_Nest REF Next; [Key] T_Fan REF Fan; };");
    EXPECT_EQ(_mof.errorOf(chain(10)), "");
    MofText other;
    other.read(
        "class T_Fan { [Key] string ID; };"
        "[Association] class T_Nest { [Key] T_Nest REF Next; [Key] T_Fan REF Fan; };");
    EXPECT_THAT(other.errorOf(chain(20)),
                testing::HasSubstr("references or embedded instances nest deeper than 16"));
}

TEST_F(MofInstancesTest, ReferencesThatDoubleAtEachLevelAreStopped) {
    std::string text =
        "instance of T_Chain as $c12 { Next = \"T_Chain\"; Other = \"T_Chain\"; };\n";
    for (int i = 0; i < 12; ++i) {
        const std::string next = "$c" + std::to_string(i + 1);
        text += "instance of T_Chain as $c" + std::to_string(i) + " { Next = " + next +
                "; Other = " + next + "; };\n";
    }
    EXPECT_THAT(_mof.errorOf(text), testing::HasSubstr("has more than 1024 keys"));
}

}  // namespace
}  // namespace cimhost
