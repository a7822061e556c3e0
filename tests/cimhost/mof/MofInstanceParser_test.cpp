#include "cimhost/mof/MofInstanceParser.h"

#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

namespace cimhost {
namespace {

using test::MofText;

class MofInstanceParser : public testing::Test {
protected:
    MofInstanceParser() {
        _mof.read("class T_Fan { [Key] string ID; uint8 Speed; string List[]; };");
    }
    MofText _mof;
};

TEST_F(MofInstanceParser, ReadsAnInstanceInFull) {
    _mof.read(
        "[Description(\"x\")] INSTANCE OF t_fan AS $fan {\n"
        "  [Description(\"y\")] id = \"1\" \"2\";\n  Speed = 0x10;\n  List = {\"a\", null};\n};");
    ASSERT_EQ(_mof.nameSpace().instances().size(), 1U);
    const Instance& fan = _mof.nameSpace().instances()[0];
    EXPECT_EQ(fan.className(), "T_Fan");
    EXPECT_EQ(fan.find("ID")->value, Value::string("12"));
    EXPECT_EQ(fan.find("Speed")->value, Value::unsignedInteger(CimType::uint8, 16));
    EXPECT_EQ(fan.find("List")->value.get<Value::Array>()->size(), 2U);
}

struct InstanceErrorRow {
    const char* text;
    const char* message;
};

constexpr InstanceErrorRow instanceErrorRows[] = {
    {"instance T_Fan {};", "t.mof:1:10: expected 'of' after 'instance', found 'T_Fan'"},
    {"instance of {};", "t.mof:1:13: expected the name of the class, found '{'"},
    {"instance of Nope {};", "t.mof:1:13: class 'Nope' is not known"},
    {"instance of T_Fan as fan {};", "t.mof:1:22: expected an alias after 'as', found 'fan'"},
    {"instance of T_Fan;",
     "t.mof:1:18: expected '{' before the properties of the instance, found ';'"},
    {"instance of T_Fan { ID = \"1\" }", "t.mof:1:30: expected ';' after the value, found '}'"},
    {"instance of T_Fan { ID \"1\"; };",
     "t.mof:1:24: expected '=' after the property, found a string"},
    {"instance of T_Fan { ID = \"1\"; }",
     "t.mof:1:32: expected ';' after the instance, found the end of the file"},
    {"instance of T_Fan { ID = \"1\";",
     "t.mof:1:30: expected the name of a property or '}', found the end of the file"},
    {"instance of T_Fan { Nope = 1; };", "t.mof:1:21: class 'T_Fan' has no property 'Nope'"},
    {"instance of T_Fan { ID = \"1\"; id = \"2\"; };", "t.mof:1:31: property 'id' is given twice"},
    {"instance of T_Fan { ID = \"1\"; Speed = 256; };",
     "t.mof:1:39: 256 is out of range for uint8 (0 to 255)"},
    {"instance of T_Fan { Speed = 1; };",
     "t.mof:1:13: an instance of 'T_Fan' has no value for its key 'ID'"},
    {"instance of T_Fan { ID = \"1\"; }; instance of T_Fan { ID = \"1\"; };",
     "t.mof:1:46: an instance of 'T_Fan' with these keys is there already"},
};

TEST_F(MofInstanceParser, SaysWhereAndWhatItExpected) {
    for (const InstanceErrorRow& row : instanceErrorRows) {
        MofText mof;
        mof.read("class T_Fan { [Key] string ID; uint8 Speed; string List[]; };");
        EXPECT_EQ(mof.errorOf(row.text), row.message) << row.text;
    }
}

}  // namespace
}  // namespace cimhost
