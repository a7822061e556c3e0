#include "cimhost/repository/ModelText.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ModelPathText.h"

#include <gtest/gtest.h>

#include <limits>

namespace cimhost {
namespace {

ObjectPath somePath() {
    ObjectPath path{"", "root/test", "Test_Base", {}};
    path.setKey("Name", Value::string("a"));
    return path;
}

TEST(ModelText, OfAPathLeavesOutWhatIsEmpty) {
    EXPECT_EQ(describe(ObjectPath{}), "");
    EXPECT_EQ(describe(ObjectPath{"", "", "C", {}}), "C");
    EXPECT_EQ(describe(ObjectPath{"h", "n", "C", {}}), "//h/n:C");
    EXPECT_EQ(describe(somePath()), "root/test:Test_Base.Name=\"a\"");
}

TEST(ModelText, OfKeysSeparatesThemAndQuotesPaths) {
    ObjectPath path{"", "", "Link", {}};
    path.setKey("From", Value::reference(somePath()));
    path.setKey("Weight", Value::signedInteger(CimType::sint8, -3));
    path.setKey("Up", Value::boolean(true));
    EXPECT_EQ(describe(path), "Link.From=\"root/test:Test_Base.Name=\\\"a\\\"\",Weight=-3,Up=TRUE");
}

TEST(ModelText, OfValuesReadsLikeMof) {
    EXPECT_EQ(describe(Value::null(CimType::uint8)), "NULL");
    EXPECT_EQ(describe(Value::boolean(false)), "FALSE");
    EXPECT_EQ(describe(Value(CimType::real64, 0.25)), "0.25");
    EXPECT_EQ(describe(Value(CimType::real64, -1500.0)), "-1500.0");
    EXPECT_EQ(describe(Value(CimType::real64, 1e300)), "1.0e+300");
    EXPECT_EQ(describe(Value(CimType::real32, double{0.1F})), "0.1");
    EXPECT_EQ(describe(Value(CimType::real64, std::numeric_limits<double>::infinity())), "inf");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, 'x')), "'x'");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, '\'')), "'\\''");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, 0xE4)), "'\xC3\xA4'");
    EXPECT_EQ(describe(Value::unsignedInteger(CimType::char16, 0xD800)), R"('\xd800')");
    EXPECT_EQ(describe(Value::array(CimType::string, {Value::string("a"), Value()})),
              "{\"a\", NULL}");
    EXPECT_EQ(describe(Value::array(CimType::uint8, {})), "{}");
}

TEST(ModelText, OfAnInstanceListsItsProperties) {
    Instance instance{somePath(), {}};
    instance.set("Name", Value::string("a"));
    instance.set("Size", Value::unsignedInteger(CimType::uint32, 3));
    EXPECT_EQ(describe(instance), "instance of Test_Base { Name = \"a\"; Size = 3; }");
}

TEST(ModelText, OfAPathIsReadAsThePathItIs) {
    ObjectPath path{"host", "root/test", "Link", {}};
    path.setKey("Text", Value::string("a \"b\" \\ , \n'"));
    path.setKey("Letter", Value::unsignedInteger(CimType::char16, '\''));
    path.setKey("Most", Value::unsignedInteger(CimType::uint64, UINT64_MAX));
    path.setKey("Least", Value::signedInteger(CimType::sint64, INT64_MIN));
    path.setKey("Real", Value(CimType::real64, -1.5e-300));
    path.setKey("Up", Value::boolean(true));
    EXPECT_EQ(Value::reference(parseModelPath(describe(path))), Value::reference(path));
}

TEST(ModelText, ForMofHasEmbeddedInstancesAsStrings) {
    Instance instance{somePath(), {}};
    instance.set("Name", Value::string("a\n\"b\""));
    EXPECT_EQ(describe(Value::instance(instance), Escapes::mof),
              R"("instance of Test_Base { Name = \"a\\n\\\"b\\\"\"; };")");
}

TEST(ModelText, ForMofRefusesWhatMofHasNoLiteralFor) {
    for (const Value& value : {Value(CimType::real64, std::numeric_limits<double>::infinity()),
                               Value(CimType::real32, std::numeric_limits<double>::quiet_NaN()),
                               Value::string(std::string(1, '\0')), Value::string("\xFF")}) {
        EXPECT_THROW(describe(value, Escapes::mof), CimError) << describe(value);
    }
}

}  // namespace
}  // namespace cimhost
