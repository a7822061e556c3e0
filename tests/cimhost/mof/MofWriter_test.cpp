#include "cimhost/mof/MofWriter.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ModelText.h"
#include "tests/cimhost/mof/MofText.h"

#include <gtest/gtest.h>

#include <limits>

namespace cimhost {
namespace {

class MofWriter : public testing::Test {
protected:
    MofWriter() {
        _mof.read(test::qualifiers);
        _mof.read(R"(
class T_Inner { string Text; real64 Real; [EmbeddedInstance("T_Inner")] string Inner; };
class T_End { [Key] string Name; [Key] char16 Letter; };
[Association] class T_All {
    [Key] string Name; string Texts[]; boolean Flag; char16 Letter; char16 Letters[];
    uint8 Small; uint64 Most; sint64 Least; real32 Single; real64 Double; datetime Made;
    datetime Times[]; T_End REF End; T_End REF Other; uint16 Numbers[];
    [EmbeddedInstance("T_Inner")] string Inner; [EmbeddedInstance("T_Inner")] string Inners[];
};)");
    }

    static Instance instance(const std::string& className = "T_All") {
        Instance instance;
        instance.path.nameSpace = "root/test";
        instance.path.className = className;
        return instance;
    }

    std::vector<DeclaredInstance> read(const std::string& text) {
        return readInstances(_mof.repository(), text, _file);
    }

    void expectReadAgain(const std::string& property, const Value& value) {
        Instance written = instance();
        written.set(property, value);
        const std::vector<DeclaredInstance> found = read(writeInstances({written}));
        ASSERT_EQ(found.size(), 1U);
        ASSERT_TRUE(found[0].instance.find(property)) << property;
        EXPECT_EQ(found[0].instance.find(property)->value, value) << property;
    }

    std::string refusal(const std::string& text) {
        try {
            read(text);
        } catch (const MofError& error) {
            return error.what();
        }
        return {};
    }

    const std::string _file = "t.mof";
    test::MofText _mof;
};

TEST_F(MofWriter, WritesAPropertyALine) {
    Instance first = instance();
    first.set("Name", Value::string("a"));
    first.set("Flag", Value::null(CimType::boolean));
    first.set("Numbers", Value::array(CimType::uint16, {Value::unsignedInteger(CimType::uint16, 1),
                                                        Value::null(CimType::uint16)}));
    Instance second = instance("T_End");
    second.path.nameSpace = "interop";
    EXPECT_EQ(writeInstances({first, first, second}),
              "#pragma namespace (\"root/test\")\n"
              "instance of T_All {\n    Name = \"a\";\n    Numbers = {1, NULL};\n};\n"
              "instance of T_All {\n    Name = \"a\";\n    Numbers = {1, NULL};\n};\n"
              "#pragma namespace (\"interop\")\n"
              "instance of T_End {\n};\n");
}

TEST_F(MofWriter, WritesTextsThatAreReadAsTheyWere) {
    std::string controls = "\xC3\xA9 \"quoted\" \\ \\x41 // ;}";
    for (char byte = 1; byte < 0x20; ++byte) (controls += byte) += "1";
    expectReadAgain("Name", Value::string(controls + "\x7F"));
    expectReadAgain("Texts",
                    Value::array(CimType::string, {Value::string("x, y"), Value::string("}"),
                                                   Value::null(CimType::string)}));
    expectReadAgain("Texts", Value::array(CimType::string, {}));
}

TEST_F(MofWriter, WritesNumbersToTheirEnds) {
    expectReadAgain("Most", Value::unsignedInteger(CimType::uint64, UINT64_MAX));
    expectReadAgain("Least", Value::signedInteger(CimType::sint64, INT64_MIN));
    for (const double number : {0.0, -0.1, 1e300, 5e-324, std::numeric_limits<double>::max()}) {
        expectReadAgain("Double", Value(CimType::real64, number));
    }
    expectReadAgain("Single", Value(CimType::real32, double{0.1F}));
    expectReadAgain("Single", Value(CimType::real32, double{std::numeric_limits<float>::max()}));
}

TEST_F(MofWriter, WritesCharactersFlagsAndTimes) {
    expectReadAgain("Flag", Value::boolean(false));
    for (const std::uint64_t unit : {0x0U, 0xAU, 0x27U, 0x5CU, 0xE9U, 0xD800U, 0xFFFFU}) {
        expectReadAgain("Letter", Value::unsignedInteger(CimType::char16, unit));
    }
    const Value time(CimType::dateTime, std::string("20240229123456.123***+060"));
    expectReadAgain("Made", time);
    expectReadAgain("Times", Value::array(CimType::dateTime, {time, time}));
}

TEST_F(MofWriter, WritesReferencesAndEmbeddedInstances) {
    ObjectPath path{"", "root/test", "T_End", {}};
    path.setKey("Name", Value::string("a \"b\" \\ \n,'"));
    path.setKey("Letter", Value::unsignedInteger(CimType::char16, '\''));
    expectReadAgain("End", Value::reference(path));
    Instance inner = instance("T_Inner");
    inner.set("Text", Value::string("\"\n\\"));
    inner.set("Real", Value(CimType::real64, 0.5));
    Instance outer = instance("T_Inner");
    outer.set("Text", Value::string("b"));
    outer.set("Inner", Value::instance(inner));
    Instance written = instance();
    written.set("Inner", Value::instance(outer));
    const auto found = read(writeInstances({written}));
    const auto& read =
        **found[0].instance.find("Inner")->value.get<std::shared_ptr<const Instance>>();
    EXPECT_EQ(read.find("Text")->value, Value::string("b"));
    const auto& deepest = **read.find("Inner")->value.get<std::shared_ptr<const Instance>>();
    EXPECT_EQ(deepest.find("Text")->value, Value::string("\"\n\\"));
    EXPECT_EQ(deepest.find("Real")->value, Value(CimType::real64, 0.5));
}

TEST_F(MofWriter, RefusesWhatMofHasNoLiteralFor) {
    for (const Value& value : {Value::string(std::string("a\0b", 3)), Value::string("\xFF"),
                               Value(CimType::real64, std::numeric_limits<double>::infinity()),
                               Value(CimType::real64, -std::numeric_limits<double>::infinity()),
                               Value(CimType::real64, std::numeric_limits<double>::quiet_NaN())}) {
        Instance written = instance();
        written.set("Name", value);
        EXPECT_THROW(writeInstances({written}), CimError) << describe(value);
    }
}

TEST_F(MofWriter, IsReadBackWithClassNamespaceAndPlace) {
    const auto found = read("#pragma namespace (\"ROOT/test\")\n  instance of t_end {\n};\n");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].instance.className(), "T_End");
    EXPECT_EQ(found[0].instance.path.nameSpace, "root/test");
    EXPECT_EQ(found[0].position.line, 2U);
    EXPECT_EQ(found[0].position.column, 15U);
    EXPECT_TRUE(_mof.nameSpace().instances().empty());
}

TEST_F(MofWriter, ReadsNothingButInstances) {
    const std::string pragma = "#pragma namespace (\"root/test\")\n";
    EXPECT_EQ(refusal("instance of T_End {};"),
              "t.mof:1:1: expected a namespace for the instances, found 'instance'");
    EXPECT_EQ(refusal("#pragma namespace (\"nowhere\")").substr(0, 12), "t.mof:1:20: ");
    EXPECT_EQ(refusal("#pragma include (\"a.mof\")").substr(0, 11), "t.mof:1:9: ");
    EXPECT_EQ(refusal(pragma + "class C {};").substr(0, 11), "t.mof:2:1: ");
    EXPECT_EQ(refusal(pragma + "instance of T_Gone {};"),
              "t.mof:2:13: class 'T_Gone' is not known");
    EXPECT_FALSE(_mof.repository().find("nowhere"));
}

}  // namespace
}  // namespace cimhost
